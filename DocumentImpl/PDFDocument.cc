#include "DocumentImpl/PDFDocument.h"

namespace vandrelle {

DEFINE_DESCRIPTOR(PDFDocument);

PDFDocument::PDFDocument(const char* filename, TkStemmer* stemmer, int docnum)
    : filename_(filename), docnum_(docnum), stemmer_(stemmer) {}

}  // namespace vandrelle

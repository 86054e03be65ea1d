// Writes the words of each document of an index as the indexer reads them, from the
// documents themselves: a line a document, in the order of their numbers, the words
// separated by blanks. Terms without a place in the text are left out.
//
//   LexedWords ROOT

#include <iostream>
#include <memory>

#include "Document/DcDocument.h"
#include "Document/DcFieldParser.h"
#include "Document/DcMetaDocManager.h"
#include "Driver/DocumentIndex.h"
#include "Driver/VymTypes.h"
#include "Exception.h"
#include "Fun/FdStream.h"
#include "Token.h"
#include "Word.h"

namespace vandrelle {
namespace {

void writeWords(const char* root) {
  const std::unique_ptr<TkStemmer> stemmer(TkManager::NullStemmer());
  const std::unique_ptr<DcFieldParser> fields(FIELD_PARSER());
  VymTypes types(root, 0);
  DcMetaDocManager documents(root, stemmer.get(), fields.get(), &types);
  for (int number = 0; number < documents.numDocuments(); ++number) {
    const std::unique_ptr<DcDocument> document(documents.documentNum(number));
    const std::unique_ptr<FdStream> words(document ? document->words() : nullptr);
    if (words) {
      for (words->reset(); words->more(); words->next()) {
        const auto* word = static_cast<const WmWord*>(words->key());
        if (word->letter(0) == ' ') continue;
        std::cout.write(word->letters(), word->num_letters()).put(' ');
      }
    }
    std::cout.put('\n');
  }
}

}  // namespace
}  // namespace vandrelle

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: LexedWords ROOT\n";
    return 2;
  }
  vandrelle::ExceptionEnvironment environment;
  if (GUARDED(environment)) {
    vandrelle::writeWords(argv[1]);
    return std::cout.flush() ? 0 : 1;
  }
  environment.restore_env();
  std::cerr << "LexedWords: " << vandrelle::ExceptionManager::instance()->pop() << '\n';
  return 1;
}

#include "Summary/PiHtmlSummarizeOperator.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <vector>

#include "Document/DcDocumentManager.h"
#include "Document/DcHeaderDocument.h"
#include "Index/IkLocalIndexBinder.h"
#include "Parser/PrArgParser.h"
#include "Parser/PrManager.h"
#include "Parser/PrNumber.h"
#include "Parser/PrParserError.h"
#include "Parser/PrSparseNode.h"
#include "Summary/PiSummarizer.h"

namespace vandrelle {

namespace {

// The body of a page as plain text; of one without a body its header. Null when
// the source is gone.
HeapAptr<char> plainText(DcAsciiDocument* doc) {
  const int size = std::max(doc->numCharacters(), 0);
  const DcHeaderDocument* page = DESCRIPTOR_CAST(DcHeaderDocument, doc);
  int begin = page == nullptr ? 0 : std::max(page->HeadSize(), 0);
  if (begin >= size) begin = 0;
  if (size == 0) return HeapAptr<char>(copyText(""));
  const auto text = std::make_unique<char[]>(static_cast<std::size_t>(size - begin) + 1);
  if (doc->characters(begin, size - begin, text.get()) == nullptr) return nullptr;
  return PiHtmlSummarizeOperator::Html2Ascii(text.get(), size - begin);
}

}  // namespace

int PiHtmlSummarizeOperator::unique_ = 0;

int PiHtmlSummarizeOperator::CreateArg(PrArgStruct* result, int numArgs, PrArgStruct* args,
                                       PrParserError* perr) {
  PrArgParser arguments;
  if (!arguments.parseArgs(1, numArgs, args, perr)) return 0;
  if (arguments.numStrings() == 0) {
    perr->fail("This operator requires one numeric argument (the docnum)");
    return 0;
  }
  if (arguments.numStrings() > 1 || arguments.numNodes() > 0 || arguments.numStreams() > 0) {
    perr->warn("This operator takes one numeric argument (the docnum). Ignoring extra arguments");
  }
  arguments.int_arg("sps", def_sntPerSeg_);
  arguments.int_arg("slide", def_sntSlide_);
  const char* separator = arguments.str_arg("sep", "");

  const std::unique_ptr<DcAsciiDocument> doc = document(arguments.string(0));
  const HeapAptr<char> text = doc == nullptr ? nullptr : plainText(doc.get());
  if (text == nullptr) {
    perr->fail("Couldn't get document");
    return 0;
  }
  const std::string root = workRoot(arguments.str_arg("sroot", nullptr));
  if (root.empty()) {
    perr->fail("Invalid tempfile path");
    return 0;
  }
  // There is no more than a sentence a character.
  const int most = static_cast<int>(std::strlen(text.get()));
  const int size = std::clamp(arguments.int_arg("n", def_summarySize_), 0, most);
  std::vector<char*> sentences(static_cast<std::size_t>(size) + 1);
  const HeapAptr<char> summary(PiSummarizer::summarize(text.get(), sentences.data(), 0, size,
                                                       root.c_str(), 0, stemmer_, lexer_));
  for (char* sentence : sentences) {
    if (sentence != nullptr) std::cout << HeapAptr<char>(sentence).get() << separator << '\n';
  }
  result->setNode(PrManager::Null());
  return 1;
}

std::unique_ptr<DcAsciiDocument> PiHtmlSummarizeOperator::document(const char* docnum) const {
  std::unique_ptr<DcDocument> doc(mgr_->documentNum(PrNumber::toInt(docnum)));
  DcAsciiDocument* text = DESCRIPTOR_CAST(DcAsciiDocument, doc.get());
  if (text == nullptr) return nullptr;
  doc.release();
  return std::unique_ptr<DcAsciiDocument>(text);
}

std::string PiHtmlSummarizeOperator::workRoot(const char* sroot) const {
  if (sroot != nullptr && binder_ != nullptr && !binder_->isUnderSafePath(sroot)) return "";
  char name[40];
  std::snprintf(name, sizeof name, "/sum-%05d-%02d", static_cast<int>(::getpid()), unique_++);
  return (sroot == nullptr ? "/tmp" : sroot) + std::string(name);
}

}  // namespace vandrelle

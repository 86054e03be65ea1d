// Shows what an index holds, through the readers that retrieval uses.
//
//   vandrelleDump -R root                  header, and the size of each file
//   vandrelleDump -R root words [prefix]   number, word, documents, idf
//   vandrelleDump -R root row WORD         the documents of a word, with frequencies
//   vandrelleDump -R root positions WORD   the same with the word's positions
//   vandrelleDump -R root docs             one line per document
//   vandrelleDump -R root doc N            all about one document
//   vandrelleDump -R root fields N         its stored fields: name and value
//   vandrelleDump -R root digest N         its weightiest words: score, number, word
//   vandrelleDump -R root stem STEM        the words behind a stem, with idf
//
// The exit status is 0, 1 after one line on the error stream (a missing or damaged
// index, an unknown word or document), 2 for a command line that is wrong.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

#include "Document/DcFieldsBinder.h"
#include "Document/DcHeaderDocument.h"
#include "Document/DcMetaDocManager.h"
#include "Driver/DriverOptions.h"
#include "Driver/FailureReport.h"
#include "Driver/VymTypes.h"
#include "Exception.h"
#include "Index/IkDataFileBinder.h"
#include "Index/IkFamily.h"
#include "Index/IkIdfBinder.h"
#include "Index/IkIndexInfo.h"
#include "Index/IkLocalIndexBinder.h"
#include "Index/IkLocalWordTable.h"
#include "Index/IkProxBinder.h"
#include "Index/IkSimilarity.h"
#include "Index/IkTranspose.h"
#include "Index/IkUnstemmer.h"
#include "KeyFile.h"
#include "KeyFile/KdChunk.h"
#include "Token/TkStemmer.h"
#include "Tool/CommandLine.h"
#include "Tool/PrintableText.h"
#include "Tool/SysTools.h"
#include "Word.h"

namespace vandrelle {
namespace {

EXCEPTION_FAMILY(Dump);

constexpr const char* kUsage =
    "usage: vandrelleDump -R root [words [prefix] | row WORD | positions WORD | docs | doc N | "
    "fields N | digest N | stem STEM]";

using vandrelle::printable;

std::string printable(const WmWord& word) {
  return printable(std::string_view(word.letters(), static_cast<std::size_t>(word.num_letters())));
}

// Bytes of a file, or of all parts of a storage that has outgrown one file; -1 if
// there is none.
std::int64_t sizeOnDisk(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_directory(path, error)) {
    const auto size = std::filesystem::file_size(path, error);
    return error ? -1 : static_cast<std::int64_t>(size);
  }
  std::int64_t total = 0;
  for (const auto& part : std::filesystem::directory_iterator(path, error)) {
    total += static_cast<std::int64_t>(part.file_size(error));
  }
  return total;
}

void showHeader(const std::string& root, IkLocalIndexBinder& binder) {
  const IkIndexInfo& info = *binder.info();
  std::cout << "numTerms           " << info.numTerms << '\n'
            << "totalNumChunks     " << info.totalNumChunks << '\n'
            << "numDigestWords     " << info.numDigestWords << '\n'
            << "mergeMaxWords      " << info.mergeMaxWords << '\n'
            << "mergeMaxDocs       " << info.mergeMaxDocs << '\n'
            << "bufferSize         " << info.bufferSize << '\n'
            << "minDocumentLength  " << info.minDocumentLength << '\n'
            << "similarityVersion  " << info.similarityVersion << '\n'
            << "numDeletedChunks   " << info.numDeletedChunks << "\n\n";

  std::int64_t total = 0;
  const auto count = [&](const char* suffix) {
    const std::int64_t size = sizeOnDisk(root + suffix);
    if (size < 0) return;
    total += size;
    std::cout << std::setw(12) << size << "  " << suffix << '\n';
  };
  count(".info");
  for (const char* suffix : kIkFamily) count(suffix);
  std::cout << std::setw(12) << total << "  together\n";
}

// Stands on a row. A position behind the rows would leave the binder where it
// was, on the row of another word.
void seekRow(IkDataFileBinder& rows, const StStoragePos& position, const WmWord& word) {
  rows.seek(position);
  if (!rows.more() || rows.tell() != position) {
    THROW(Dump, "the word table leads behind the rows for '" << printable(word) << "'");
  }
}

int countDocuments(IkDataFileBinder& rows) {
  int documents = 0;
  rows.unpackPairs([&](int, int) { ++documents; });
  return documents;
}

bool startsWith(const WmWord& word, const WmWord& prefix) {
  return word.num_letters() >= prefix.num_letters() &&
         std::memcmp(word.letters(), prefix.letters(),
                     static_cast<std::size_t>(prefix.num_letters())) == 0;
}

void showWords(IkLocalIndexBinder& binder, const char* prefixText) {
  if (binder.info()->numTerms == 0) return;
  KdFileAccessor& table = *binder.keyfile();
  if (table.Data_Size() != 4 && table.Data_Size() != 5) {
    THROW(Dump, "the word table holds no positions of rows");
  }
  IkDataFileBinder& rows = *binder.indexData(0, 0);
  IkIdfBinder& idfs = *binder.idfBinder();
  const WmLocalWord prefix(prefixText);
  const std::unique_ptr<KdStream> words(table.iterator());
  if (prefix->valid()) {
    words->reset(prefix.word());
  } else {
    words->reset();
  }
  int32 number = 0;
  if (words->more()) table.Lookup(words->key(), &number);
  for (; words->more() && startsWith(*words->key(), *prefix); words->next(), ++number) {
    seekRow(rows, IkLocalWordTable::pos(words->data(), words->dataSize()), *words->key());
    std::cout << std::setw(8) << number << "  " << std::left << std::setw(24)
              << printable(*words->key()) << std::right << std::setw(8) << countDocuments(rows)
              << std::setw(10) << std::fixed << std::setprecision(4)
              << idfs.idf(static_cast<unsigned>(number)) << '\n';
  }
}

// Stands on the row of a word and answers the word's number.
int findRow(IkLocalIndexBinder& binder, const char* text) {
  StStoragePos position;
  if (std::strlen(text) > kKdMaxLetters) THROW(Dump, "the index has no word '" << text << "'");
  const WmLocalWord word(text);
  if (binder.info()->numTerms == 0 || !binder.wordTable()->lookup(word.word(), position)) {
    THROW(Dump, "the index has no word '" << text << "'");
  }
  seekRow(*binder.indexData(0, 0), position, *word);
  return binder.wordTable()->wordNum(word.word());
}

void showRow(IkLocalIndexBinder& binder, const char* text) {
  const int number = findRow(binder, text);
  IkDataFileBinder& rows = *binder.indexData(0, 0);
  std::cout << "word " << number << ", " << countDocuments(rows) << " documents, idf " << std::fixed
            << std::setprecision(4) << rows.scale() << ", row of " << rows.linesize()
            << " bytes at " << rows.tell() << " (hexadecimal)\n";
  rows.unpackPairs([](int document, int frequency) {
    std::cout << std::setw(8) << document << std::setw(8) << frequency << '\n';
  });
}

void showPositions(IkLocalIndexBinder& binder, const char* text) {
  const int number = findRow(binder, text);
  if (!binder.hasPositions()) {
    THROW(Dump, "the index was built without the positions of its words");
  }
  IkDataFileBinder& rows = *binder.indexData(0, 0);
  const auto word = static_cast<uint32>(number);
  const std::unique_ptr<IkProxBuffer> positions(binder.positions()->getBuffer(word));
  std::cout << "word " << number << ", " << countDocuments(rows) << " documents, "
            << (binder.positions()->map()->lookup(word + 1) -
                binder.positions()->map()->lookup(word))
                   .Bytes()
            << " bytes of positions\n";
  // Deleted documents have positions, too.
  rows.unpackAllPairs([&](int document, int frequency) {
    positions->reset();
    if (rows.deleter() != nullptr && rows.deleter()->isDeleted(document)) {
      positions->skip(static_cast<std::uint64_t>(frequency));
      return;
    }
    std::cout << std::setw(8) << document << ' ';
    for (int i = 0; i < frequency; ++i) std::cout << ' ' << positions->get();
    std::cout << '\n';
  });
}

// One line a field; the number of lines.
int showFields(DcFieldsBinder& fields) {
  int count = 0;
  for (DcFieldInfo field; fields.getField(field); ++count) {
    std::cout << std::left << std::setw(9) << printable(field.name.get()) << ' ' << std::right
              << printable(field.value.get()) << '\n';
  }
  return count;
}

void showFieldsOf(const char* root, int number) {
  DcFieldsBinder fields(root);
  if (!fields.valid()) THROW(Dump, "the index has no fields that can be read");
  if (!fields.gotoDoc(number)) THROW(Dump, "no fields are stored for a document " << number);
  if (showFields(fields) == 0) {
    THROW(Dump, "the fields of document " << number << " can't be read");
  }
}

void showDigest(IkLocalIndexBinder& binder, int number) {
  IkTranspose& digests = *binder.transpose();
  if (number >= digests.numDocs()) THROW(Dump, "the index has no digest of document " << number);
  struct Release {
    void operator()(IkTransposeWords* words) const { ::operator delete(words); }
  };
  const std::unique_ptr<IkTransposeWords, Release> words(digests.allWords(number, nullptr));
  // By falling score; an entry that isn't in use has none, and the rest haven't either.
  for (int i = 0; i < words->numWords() && words->word_score(i) > 0; ++i) {
    const WmWord* word = binder.wordTable()->word(words->word_num(i));
    if (word == nullptr) {
      THROW(Dump, "the digest of document " << number << " leads to a word " << words->word_num(i)
                                            << ", which the index hasn't got");
    }
    std::cout << std::setw(8) << std::fixed << std::setprecision(5) << words->word_score(i)
              << std::setw(8) << words->word_num(i) << "  " << printable(*word) << '\n';
  }
}

void showStem(IkLocalIndexBinder& binder, const char* text) {
  if (std::strlen(text) > WmWord::kMaxLetters) {
    THROW(Dump, "no words are stored for a stem '" << text << "'");
  }
  const WmLocalWord stem(text);
  IkUnstemmer::Tree words;
  binder.unstemmer()->find(*stem, words, std::numeric_limits<int>::max());
  if (words.size() == 0) THROW(Dump, "no words are stored for a stem '" << text << "'");
  for (auto entries = words.iterator(); entries.more(); entries.next()) {
    const IkUnstemmerTableData& entry = entries.data();
    if (binder.wordTable()->wordNum(entry.word.word()) < 0) {
      THROW(Dump, "the unstemming table names '" << printable(*entry.word)
                                                 << "', which the index hasn't got");
    }
    std::cout << std::left << std::setw(24) << printable(*entry.word) << std::right << std::setw(10)
              << std::fixed << std::setprecision(4) << entry.idf << '\n';
  }
}

// The document list beside the weights that the word index has for it.
class Documents {
 public:
  Documents(const char* root, IkLocalIndexBinder& binder)
      : types_(root, 0),
        manager_(root, &stemmer_, nullptr, &types_),
        binder_(binder),
        fields_(root) {
    similarity_.bind(binder.info());
  }

  int count() { return manager_.numDocuments(); }
  void showLine(int number);
  void showAll(int number);

 private:
  std::unique_ptr<DcDocument> document(int number);
  // Documents without words at the end of the list have no weights.
  bool weighed(int number) { return number < binder_.info()->totalNumChunks; }
  int norm(int number) { return weighed(number) ? binder_.normfile()[number] : 0; }
  float vectorLength(int number) { return weighed(number) ? binder_.sumfile()[number] : 0.0f; }

  TkPassStem stemmer_;
  VymTypes types_;
  DcMetaDocManager manager_;
  IkLocalIndexBinder& binder_;
  DcFieldsBinder fields_;
  IkSimilarity similarity_;
};

// Null for a document that is listed and has no text to read, as one in a binary format.
std::unique_ptr<DcDocument> Documents::document(int number) {
  if (number >= manager_.numDocuments()) THROW(Dump, "the index has no document " << number);
  return std::unique_ptr<DcDocument>(manager_.documentNum(number));
}

void Documents::showLine(int number) {
  const std::unique_ptr<DcDocument> found = document(number);
  const std::unique_ptr<char[]> name(manager_.numToName(number));
  std::cout << std::setw(8) << number << std::setw(6) << manager_.currentType();
  auto* text = DESCRIPTOR_CAST(DcHeaderDocument, found.get());
  std::cout << std::setw(10) << (text == nullptr ? 0 : text->numCharacters()) << std::setw(5)
            << norm(number) << std::setw(12) << std::fixed << std::setprecision(3)
            << vectorLength(number) << "  " << printable(name.get()) << '\n';
}

void Documents::showAll(int number) {
  const std::unique_ptr<DcDocument> found = document(number);
  const std::unique_ptr<char[]> name(manager_.numToName(number));
  std::cout << "document  " << number << '\n'
            << "name      " << printable(name.get()) << '\n'
            << "type      " << manager_.currentType() << '\n';
  if (auto* text = DESCRIPTOR_CAST(DcHeaderDocument, found.get())) {
    std::cout << "size      " << text->numCharacters() << '\n'
              << "header    " << text->HeadSize() << '\n';
  }
  std::cout << "norm      " << norm(number);
  if (norm(number) > 0) {
    const double decoded = similarity_.Byte2Norm(static_cast<unsigned char>(norm(number)));
    std::cout << ", about " << std::lround(1.0 / (decoded * decoded)) << " characters of words";
  }
  std::cout << "\nlength    " << std::fixed << std::setprecision(3) << vectorLength(number) << '\n';
  if (fields_.valid() && fields_.gotoDoc(number)) showFields(fields_);
}

// What a command shows, with its word or prefix, or the number of a document.
struct Subject {
  const char* root;
  IkLocalIndexBinder& binder;
  const char* word;
  int number;
};

void showList(const Subject& of) {
  Documents documents(of.root, of.binder);
  for (int number = 0; number < documents.count(); ++number) documents.showLine(number);
}

enum Argument { kNone, kPrefix, kWord, kNumber };

struct Command {
  std::string_view name;
  Argument argument;
  void (*show)(const Subject& of);
};

constexpr Command kCommands[] = {
    {"", kNone, [](const Subject& of) { showHeader(of.root, of.binder); }},
    {"words", kPrefix, [](const Subject& of) { showWords(of.binder, of.word); }},
    {"row", kWord, [](const Subject& of) { showRow(of.binder, of.word); }},
    {"positions", kWord, [](const Subject& of) { showPositions(of.binder, of.word); }},
    {"docs", kNone, showList},
    {"doc", kNumber, [](const Subject& of) { Documents(of.root, of.binder).showAll(of.number); }},
    {"fields", kNumber, [](const Subject& of) { showFieldsOf(of.root, of.number); }},
    {"digest", kNumber, [](const Subject& of) { showDigest(of.binder, of.number); }},
    {"stem", kWord, [](const Subject& of) { showStem(of.binder, of.word); }},
};

// The command that the words of the line make, null if they make none. Stores its
// argument.
const Command* commandOf(const CommandLine& line, const char** word, int* number) {
  const std::string_view name = line.numUnusedArgs() == 0 ? "" : line.unusedArg(0);
  const auto* command = std::find_if(std::begin(kCommands), std::end(kCommands),
                                     [name](const Command& c) { return c.name == name; });
  if (command == std::end(kCommands)) return nullptr;
  const int arguments = std::max(line.numUnusedArgs() - 1, 0);
  const bool optional = command->argument == kPrefix && arguments == 0;
  if (arguments != (command->argument == kNone || optional ? 0 : 1)) return nullptr;
  *word = arguments == 0 ? "" : line.unusedArg(1);
  const bool sound = command->argument != kNumber ||
                     parseNumber(*word, 0, std::numeric_limits<int>::max(), number);
  return sound ? command : nullptr;
}

int run(int argc, char** argv) {
  static FailureReport report("vandrelleDump");
  CommandLine options;
  options.arg_double("root", "-R", nullptr);
  options.parse(argc, argv);
  const char* word = nullptr;
  int number = 0;
  const std::string fault = wrongOption(argc, argv, options, {"-R"}, 1);
  const Command* const command = commandOf(options, &word, &number);
  if (!fault.empty() || command == nullptr || !options.exist_arg("root")) {
    report.report(fault.empty() ? kUsage : fault + "; " + kUsage);
    return 2;
  }
  return runReported(report, [&] {
    const char* const root = options.str_arg("root");
    IkLocalIndexBinder binder(root, nullptr);
    command->show({root, binder, word, number});
  });
}

}  // namespace
}  // namespace vandrelle

int main(int argc, char** argv) { return vandrelle::run(argc, argv); }

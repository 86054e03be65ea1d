// Judges the stem rules on word families: the words that the affix rules of a
// spelling dictionary make of each of its stems (hunspell's en_US.dic and .aff;
// endings only, no prefixes and no possessives). Entries that make the same word
// are one family, and those that differ as stop and stopped, happy and happily, basic
// and basically do: these the dictionary spells out.
//
//   StemFamilies TABLE DICTIONARY [-missed N] [-merged N]
//
// TABLE is a compiled stem table, DICTIONARY the path without .dic and .aff. Two
// shares are counted, for these rules and, where the library was there at build
// time, for the English stemmer of Snowball:
//
//   meet    pairs of one family that have one stem
//   apart   strangers that have different stems: words of two families that begin
//           with the same 4 letters and are at most 5 such strangers from each other
//           in the alphabet. "Clear" strangers leave those out that may well be kin:
//           with 5 letters or more in common and only common endings behind them.
//
// -missed and -merged list N pairs each that the rules get wrong, spread evenly.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <regex>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "Token/TkStemTable.h"
#ifdef VANDRELLE_SNOWBALL
#include <libstemmer.h>
#endif

namespace vandrelle {
namespace {

using Stem = std::function<std::string(const std::string&)>;

bool isPlain(const std::string& word) {
  return !word.empty() &&
         std::all_of(word.begin(), word.end(), [](char c) { return c >= 'a' && c <= 'z'; });
}

// One line of a suffix class: strip, append, and the condition on the stem's end.
struct Ending {
  std::string strip, append;
  std::vector<std::string> condition;  // sets of letters; an empty one is any
  std::vector<bool> negated;

  bool fits(const std::string& stem) const {
    if (stem.size() < condition.size() || !stem.ends_with(strip)) return false;
    const std::size_t from = stem.size() - condition.size();
    for (std::size_t i = 0; i < condition.size(); ++i) {
      if (condition[i].empty()) continue;
      const bool in = condition[i].find(stem[from + i]) != std::string::npos;
      if (in == negated[i]) return false;
    }
    return true;
  }
};

using Endings = std::map<char, std::vector<Ending>>;

Endings readAffixes(const std::string& path) {
  Endings endings;
  std::ifstream is(path);
  std::string line;
  while (std::getline(is, line)) {
    std::istringstream fields(line);
    std::string kind, flag, strip, append, condition;
    if (!(fields >> kind >> flag >> strip >> append >> condition) || kind != "SFX") continue;
    Ending ending{strip == "0" ? "" : strip, append, {}, {}};
    for (std::size_t i = 0; i < condition.size(); ++i) {
      const std::size_t end = condition[i] == '[' ? condition.find(']', i) : i;
      if (end == std::string::npos) break;
      std::string set = condition[i] == '['   ? condition.substr(i + 1, end - i - 1)
                        : condition[i] == '.' ? ""
                                              : std::string(1, condition[i]);
      const bool negated = !set.empty() && set[0] == '^';
      ending.condition.push_back(negated ? set.substr(1) : set);
      ending.negated.push_back(negated);
      i = end;
    }
    endings[flag[0]].push_back(ending);
  }
  return endings;
}

struct Word {
  std::string text;
  int family;
};

// Forms of a word that are entries of their own where they exist.
std::vector<std::string> spelledOut(const std::string& word) {
  const std::string front = word.substr(0, word.size() - 1);
  const char last = word.back();
  std::vector<std::string> forms;
  if (std::strchr("bdgklmnprtvz", last) != nullptr) {
    for (const char* ending : {"ed", "ing", "ings"}) forms.push_back(word + last + ending);
    if (word.size() >= 4) {
      for (const char* ending : {"er", "ers", "est"}) forms.push_back(word + last + ending);
    }
  }
  if (last == 'y') forms.push_back(front + "ily");
  if (word.ends_with("le")) forms.push_back(front + "y");
  if (word.ends_with("ic")) forms.push_back(word + "ally");
  return forms;
}

// All words, sorted, with the number of their family.
std::vector<Word> readWords(const std::string& dictionary) {
  const Endings endings = readAffixes(dictionary + ".aff");
  std::vector<int> parent;
  std::map<std::string, int> entryOf;
  const auto root = [&parent](int i) {
    while (parent[static_cast<std::size_t>(i)] != i) i = parent[static_cast<std::size_t>(i)];
    return i;
  };
  std::ifstream is(dictionary + ".dic");
  std::string line;
  while (std::getline(is, line)) {
    const std::size_t slash = line.find('/');
    const std::string stem = line.substr(0, slash);
    if (!isPlain(stem) || stem.size() < 3) continue;
    const int entry = static_cast<int>(parent.size());
    parent.push_back(entry);
    const auto add = [&](const std::string& word) {
      const auto [found, fresh] = entryOf.emplace(word, entry);
      if (!fresh) parent[static_cast<std::size_t>(root(entry))] = root(found->second);
    };
    add(stem);
    for (std::size_t i = slash; i < line.size() && slash != std::string::npos; ++i) {
      const auto found = endings.find(line[i]);
      if (found == endings.end()) continue;
      for (const Ending& ending : found->second) {
        const std::string word = stem.substr(0, stem.size() - ending.strip.size()) + ending.append;
        if (ending.fits(stem) && isPlain(word)) add(word);
      }
    }
  }
  for (const auto& [text, entry] : entryOf) {
    for (const std::string& other : spelledOut(text)) {
      const auto found = entryOf.find(other);
      if (found == entryOf.end()) continue;
      parent[static_cast<std::size_t>(root(found->second))] = root(entry);
    }
  }
  std::vector<Word> words;
  for (const auto& [text, entry] : entryOf) words.push_back({text, root(entry)});
  return words;
}

struct Pair {
  std::size_t first, second;  // of the words
};

struct Pairs {
  std::vector<Pair> kin, strangers;
  std::vector<bool> clear;  // of each pair of strangers
};

bool isCommonEnding(std::string_view ending) {
  static const std::regex endings(
      "|e|y|s|es|ies|ed|ied|ing|ings|ion|ions|(at|it|iz|if|ific|ic|iv|at)?(e|es|ed|ing|ion|ions|or|"
      "ors|ive|ively)|i?(al|ally|an|ans|ant|ent|ance|ence|ar|ary|able|ably|ably|ability|er|ers|or|"
      "ors|est|ment|ments|ness|ity|ities|ive|ively|ous|ously|ic|ics|ical|ically|ism|isms|ist|ists|"
      "istic|ize|ized|izes|izing|ization|less|ful|fully|ly|ship|hood|dom|ish|en|ens|age|th|y)");
  return std::regex_match(ending.begin(), ending.end(), endings);
}

Pairs pairsOf(const std::vector<Word>& words) {
  constexpr std::size_t kAlike = 4, kStrangers = 5, kKinPrefix = 5;
  Pairs pairs;
  std::map<int, std::vector<std::size_t>> families;
  for (std::size_t i = 0; i < words.size(); ++i) families[words[i].family].push_back(i);
  for (const auto& [family, members] : families) {
    for (std::size_t a = 0; a < members.size(); ++a) {
      for (std::size_t b = a + 1; b < members.size(); ++b)
        pairs.kin.push_back({members[a], members[b]});
    }
  }
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string& first = words[i].text;
    if (first.size() < kAlike) continue;
    std::size_t met = 0;
    for (std::size_t j = i + 1; j < words.size() && met < kStrangers; ++j) {
      const std::string& second = words[j].text;
      if (second.compare(0, kAlike, first, 0, kAlike) != 0) break;
      if (words[j].family == words[i].family) continue;
      ++met;
      const auto differ = std::mismatch(first.begin(), first.end(), second.begin(), second.end());
      const auto common = static_cast<std::size_t>(differ.first - first.begin());
      bool kin = false;
      // The border of the stem may lie a letter or two before the first difference.
      for (std::size_t at = common; at >= kKinPrefix && at + 3 > common; --at) {
        kin = kin || (isCommonEnding(std::string_view(first).substr(at)) &&
                      isCommonEnding(std::string_view(second).substr(at)));
      }
      pairs.strangers.push_back({i, j});
      pairs.clear.push_back(!kin);
    }
  }
  return pairs;
}

struct Shares {
  long kin = 0, meet = 0, strangers = 0, apart = 0, clear = 0, clearApart = 0;
};

double percent(long part, long whole) {
  return whole == 0 ? 0 : 100.0 * static_cast<double>(part) / static_cast<double>(whole);
}

void judge(const char* name, const std::vector<Word>& words, const Pairs& pairs, const Stem& stem) {
  std::vector<std::string> stems;
  for (const Word& word : words) stems.push_back(stem(word.text));
  Shares s;
  for (const Pair& pair : pairs.kin) {
    ++s.kin;
    s.meet += stems[pair.first] == stems[pair.second];
  }
  for (std::size_t i = 0; i < pairs.strangers.size(); ++i) {
    const Pair& pair = pairs.strangers[i];
    const bool apart = stems[pair.first] != stems[pair.second];
    ++s.strangers;
    s.apart += apart;
    s.clear += pairs.clear[i];
    s.clearApart += pairs.clear[i] && apart;
  }
  std::printf("%-10s %8ld %7.2f%% %10ld %7.2f%% %10ld %7.2f%%\n", name, s.kin,
              percent(s.meet, s.kin), s.strangers, percent(s.apart, s.strangers), s.clear,
              percent(s.clearApart, s.clear));
}

void list(const char* title, const std::vector<Word>& words, std::vector<Pair> wrong, long count,
          const Stem& stem) {
  if (count <= 0) return;
  std::cout << '\n' << title << " (" << wrong.size() << "):\n";
  const std::size_t step = std::max<std::size_t>(1, wrong.size() / static_cast<std::size_t>(count));
  for (std::size_t i = 0; i < wrong.size(); i += step) {
    const std::string &a = words[wrong[i].first].text, &b = words[wrong[i].second].text;
    std::cout << "  " << a << " (" << stem(a) << ") " << b << " (" << stem(b) << ")\n";
  }
}

int run(int argc, char** argv) {
  if (argc < 3) {
    std::cerr << "usage: StemFamilies TABLE DICTIONARY [-missed N] [-merged N]\n";
    return 1;
  }
  const TkStemTable table(argv[1]);
  const std::vector<Word> words = readWords(argv[2]);
  const Pairs pairs = pairsOf(words);
  const Stem rules = [&table](const std::string& word) {
    char buffer[TkStemTable::kStemBuffer] = {}, place[TkStemTable::kStemBuffer + 1];
    word.copy(buffer, sizeof buffer - 1);
    const WmWord* stem = table.stem(reinterpret_cast<WmWord*>(place), buffer);
    return std::string(stem->letters(), static_cast<std::size_t>(stem->num_letters()));
  };
  std::printf("%zu words\n%-10s %8s %8s %10s %8s %10s %8s\n", words.size(), "rules", "kin", "meet",
              "strangers", "apart", "clear", "apart");
  judge("stem.src", words, pairs, rules);
#ifdef VANDRELLE_SNOWBALL
  const std::unique_ptr<sb_stemmer, void (*)(sb_stemmer*)> snowball(
      sb_stemmer_new("english", nullptr), sb_stemmer_delete);
  judge("Snowball", words, pairs, [&snowball](const std::string& word) {
    const auto* from = reinterpret_cast<const sb_symbol*>(word.data());
    const sb_symbol* stem = sb_stemmer_stem(snowball.get(), from, static_cast<int>(word.size()));
    return std::string(reinterpret_cast<const char*>(stem),
                       static_cast<std::size_t>(sb_stemmer_length(snowball.get())));
  });
#endif
  std::vector<Pair> missed, merged;
  for (const Pair& pair : pairs.kin) {
    if (rules(words[pair.first].text) != rules(words[pair.second].text)) missed.push_back(pair);
  }
  for (std::size_t i = 0; i < pairs.strangers.size(); ++i) {
    const Pair& pair = pairs.strangers[i];
    if (pairs.clear[i] && rules(words[pair.first].text) == rules(words[pair.second].text)) {
      merged.push_back(pair);
    }
  }
  for (int i = 3; i + 1 < argc; i += 2) {
    const long count = std::atol(argv[i + 1]);
    if (std::strcmp(argv[i], "-missed") == 0) list("Kin kept apart", words, missed, count, rules);
    if (std::strcmp(argv[i], "-merged") == 0) list("Clear strangers", words, merged, count, rules);
  }
  return 0;
}

}  // namespace
}  // namespace vandrelle

int main(int argc, char** argv) { return vandrelle::run(argc, argv); }

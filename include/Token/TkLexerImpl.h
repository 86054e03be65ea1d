// What the concrete lexers have in common: the word under construction and the
// machine that builds it.
//
// Two roads lead through the machine and must never differ in effect. The steps
// (startCharacter, textStep) treat any character in any state. textRun treats
// whole runs of the characters that nearly every text consists of, in the states
// in which their effect is simple, and leaves all else to the steps.
#pragma once

#include <cstdint>

#include "Token/CharacterClass.h"
#include "Token/TkLexer.h"

namespace vandrelle {

class TkLexerImpl : public TkLexer {
 public:
  void reset() override;
  void nextCharacter(char c) override;
  int flags() override { return flags_; }
  WmWord* word() override;
  void end() override;
  int offset() override { return offset_; }
  void offset(int characters) override { offset_ = characters; }
  int wordStart() override { return midword_ - 1; }
  const char* scan(const char* begin, const char* end) override;

 protected:
  // Letters that a word may have; a longer one is dropped.
  static constexpr int kMaxLetters = 62;

  // What a character does in a run of text, a bit set; kLineEnd is the flag that
  // it raises.
  enum TextClass : std::uint8_t {
    kInGap = 4,      // between words it only passes
    kEndsWord = 8,   // behind a letter it ends the word, no more
    kWordStart = 16  // letters and digits
  };

  // A lexer's own state at reset(); the boundaries at a character; the
  // boundaries at the end of the text.
  virtual void resetImpl() {}
  virtual void setFlags(char) {}
  virtual void setLastFlags() {}

  // Clears a word that was delivered and starts the next one with the character
  // that was held over. Comes before offset_ counts the new character.
  void startCharacter() {
    dropDeliveredWord();
    if (extra_ == 0) return;
    if (character_class::isHigh(extra_)) {
      replaceCharacter();
    } else {
      append(extra_);
    }
    extra_ = 0;
    midword_ = offset_;
  }

  void dropDeliveredWord() {
    if (word_ == 0) return;
    current_ = 0;
    midword_ = 0;
    endword_ = 0;
    flags_ = 0;
    word_ = 0;
    period_ = 0;
  }

  // A high byte inside a word neither adds to it nor ends it; only one behind a
  // finished word counts: it delivers that and starts the next. True if `c` was
  // a high byte.
  bool highStep(char c) {
    if (!character_class::isHigh(c)) return false;
    if (endword_ != 0) {
      extra_ = c;
      word_ = 1;
    }
    return true;
  }

  // A character below 0x80 that is text.
  void textStep(char c);
  // The part of it that follows once a word has begun. `c` is a word character
  // if it is alphanumeric, `'`, `-` or `joins`.
  void wordStep(char c, bool joins);

  // Feeds characters while they need no other step; needs word_, extra_,
  // period_ and possibleSentence_ clear. Answers the first one not fed, which may
  // be `begin`; stops behind the one that finishes a word.
  const char* textRun(const std::uint8_t* classes, const char* begin, const char* end);

  // Appends the entity text of the high byte in extra_.
  void replaceCharacter();
  void append(char c) {
    ++current_;
    buf_[current_] = WmWord::AsciiToWm(c);
  }
  // The letter at this place of buf_, where letters start at 1; 0 before them.
  char letterAt(int place) const { return place < 1 ? '\0' : buf_[place]; }

  int flags_ = 0;
  // In the layout of a WmWord; word() fills in the length.
  char buf_[64] = {};
  int current_ = 0;           // letters in buf_
  char extra_ = 0;            // held over to start the next word; 0 if none
  int midword_ = 0;           // offset_ at the word's first character; 0 before it
  int word_ = 0;              // a finished word is ready
  int offset_ = 0;            // characters fed so far
  int endword_ = 0;           // the word has ended and waits for the next one's start
  int possibleSentence_ = 0;  // a sentence mark waits for what comes behind it
  int lastEOS_ = -1;          // offset_ of the last sentence mark
  char period_ = 0;           // the last character of the word was a period
  char toolong_ = 0;          // the word has overflowed and will be dropped
  int haveamperson_ = 0;      // the word holds an `&`, so a `;` belongs to it

 private:
  const char* letterRun(const char* begin, const char* end);
  const char* finishRun(const char* begin, const char* p) {
    current_ += static_cast<int>(p - begin);
    offset_ += static_cast<int>(p - begin);
    return p;
  }
};

}  // namespace vandrelle

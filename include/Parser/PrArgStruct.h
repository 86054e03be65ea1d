// One argument or result of an operator of the query language.
#pragma once

namespace vandrelle {

class FdStream;
class PrParserNode;

struct PrArgStruct {
  // The values of `type`. Any other stands for an object that only its maker and
  // its user know.
  enum Type : unsigned char { kNone = 0, kString = 1, kNode = 2, kStream = 3, kWordStream = 4 };

  unsigned char type = kNone;

  // Not 0: whoever holds the argument deletes the object after use, by
  // deleteObject().
  unsigned char parserDelete = 0;

  union {
    void* object = nullptr;
    char* string;        // kString: NUL-terminated, from new[] where it is owned
    PrParserNode* node;  // kNode
    FdStream* stream;    // kStream; kWordStream: keys are words, data float weights
  };

  // Fill an empty argument; the node or stream is owned.
  void setNode(PrParserNode* made);
  void setStream(FdStream* made);
  // `text` is not owned.
  void setString(char* text);

  // Forgets the object without deleting it.
  void clear() { *this = PrArgStruct(); }

  // Deletes the object if it is owned, and clears. Of an object of unknown type
  // only the memory is given back, by operator delete: one that needs its
  // destructor must not be handed over as owned.
  void deleteObject();
};

}  // namespace vandrelle

#include "Parser/PrArgStruct.h"

#include <new>

#include "Fun/FdStream.h"
#include "Parser/PrParserNode.h"

namespace vandrelle {

void PrArgStruct::setNode(PrParserNode* made) {
  type = kNode;
  parserDelete = 1;
  node = made;
}

void PrArgStruct::setStream(FdStream* made) {
  type = kStream;
  parserDelete = 1;
  stream = made;
}

void PrArgStruct::setString(char* text) {
  type = kString;
  parserDelete = 0;
  string = text;
}

void PrArgStruct::deleteObject() {
  if (parserDelete != 0) {
    switch (type) {
      case kString:
        delete[] string;
        break;
      case kNode:
        delete node;
        break;
      case kStream:
      case kWordStream:
        delete stream;
        break;
      default:
        ::operator delete(object);
    }
  }
  clear();
}

}  // namespace vandrelle

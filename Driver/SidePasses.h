// Small passes around the index proper, each on finished files under the root
// name and through the binders that any reader would use.
//
//   <root>.sum.map   one 32-bit big-endian offset a document into .sum.idx
//   <root>.sum.idx   the byte "*", then each document's summary with its NUL;
//                    so no offset is 0
#pragma once

#include "Tool/NameManager.h"

namespace vandrelle {

class TkStemmer;

// Removes every file whose name is the root's plus ".tmp" and anything.
void removeTempFiles(NameManager* rootName);

// Removes <root>.prxNNN, the positions that went with those files; not <root>.prx.
void removeTempPositions(NameManager* rootName);

// Removes the field database in its slow form; absent files don't matter.
void removeFieldFiles(NameManager* rootname);

// Turns the field database into its fast form and removes the slow one. 1 on
// success, 0 on failure.
int CREATE_FAST_FILES(NameManager* root);

// Writes <root>.unstem: for each stem the words of the index with that stem.
// Words too rare to matter (idf above 9) and words without a stem are left out.
// `stemmer` is not owned. Always 1; failures throw.
int CREATE_UNSTEM_INDEX(NameManager* rootname, TkStemmer* stemmer, int ndocs);

// Writes the flat summary file of a finished index. 0 on success, else -1. The
// numbers are accepted and not used: summaries stand in the field database.
int CREATE_SUMMARY_FILE(const char* root, int maxsize, int numsents);

// For applications; no command calls these two. A failure is logged.
// Moves <root>.new<ext> to <root><ext>.
void renameFile(NameManager* rootName, const char* ext);
void removeFile(const char* name);

}  // namespace vandrelle

// What may stand under the root name of an index, for those who remove, move or count
// all of it. What each file holds: docs/file-formats.md.
#pragma once

namespace vandrelle {

// Of changes after the build: a new index, and a merge, is without them.
inline constexpr const char* kIkChangeSuffixes[] = {
    ".xw", ".xd", ".xo", ".xt", ".xidx.xw", ".xidx.xo", ".xidx.xd", ".xidx.xt", ".xk"};

// An empty file that stands there while words are indexed, up to the end of the build.
inline constexpr const char* kIkUnfinished = ".unfinished";

// All but the header, .info, which tells that the index is whole: the first to go, the
// last to come. What a user puts beside an index (.cus, .sep) is not of it.
inline constexpr const char* kIkFamily[] = {
    ".key",      ".ptr",     ".wrd",      ".dat",         ".idf",     ".sum",       ".norm",
    ".norm.raw", ".ver",     ".trp",      ".prx",         ".prx.map", ".xk",        ".unstem",
    ".idx",      "_one.idx", "_mlt.idx",  ".spc",         ".lst",     ".lpt",       ".dir",
    ".url",      ".lru",     ".tit",      ".fidx",        ".fdat",    ".fnam",      ".fld.ptr",
    ".fld.lst",  ".fld.nam", ".fld.val",  ".sum.map",     ".sum.idx", ".log",       ".prog",
    ".size",     ".qa.map",  ".qa.cache", ".latest.info", ".xw",      ".xd",        ".xo",
    ".xt",       ".xidx.xw", ".xidx.xo",  ".xidx.xd",     ".xidx.xt", kIkUnfinished};

}  // namespace vandrelle

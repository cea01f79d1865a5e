// The frame of a list in a text stream: the tag lines that make the file readable to a person. No
// reader compares a tag.
#pragma once

#include "trunnion/export.h"

// Each builds a tag in `out` from the list's `name`, a short text: up to 73 characters keep a tag
// line within 100. `out` must hold the name, 15 further characters and the terminator. Returns 1.
TRUNNION_API int slGetArrBeginStr(char *out, const char *name); // "<name>_LIST_BEGIN"
TRUNNION_API int slGetArrIndexStr(char *out, const char *name); // "INDEX_OF_<name>_LIST"
TRUNNION_API int slGetArrEndStr(char *out, const char *name);   // "<name>_LIST_END"

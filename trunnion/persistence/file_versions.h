// Names of file versions, messages for the failure codes of files, and a diagnostic log.
#pragma once

#include "trunnion/export.h"

// Number of the file version `name`, compared as a whole and with regard to case. Throws the
// integer 111 for a name that is not in the table:
//
//   "ozk1.0" to "ozk1.4"                 10 to 14
//   "ozk3.0" to "ozk3.9"                 30 to 39
//   "ozk4.0" to "ozk4.7"                 40 to 47
//   "ozk4.008", "ozk4.010" to "ozk4.014" 4008, 4010 to 4014
//   "ozk5.001", "ozk5.002"               5001, 5002
//   "MAC1.00" to "MAC1.02"               100 to 102
//
// No file is read: the caller has the name from wherever its file keeps it.
TRUNNION_API int slGetFileVersion(const char *name);

// Shows the message of a failure code, and behind it ": " and the file name unless that is null, in
// a modal box; returns 1 when the user has closed it. The texts are GBK. Codes: 107 read failed,
// 108 save failed, 109 open failed, 110 wrong file type, 111 wrong file version, 112 to 114 the
// last three for texture files, 142 data error; any other is an unknown error. A text of more than
// 259 bytes is cut.
TRUNNION_API int slFileMessage(int code, const char *fileName);

// With `condition` 0 appends two lines to the log "E:\machine.log": the UTC time as year, month,
// day, hour and minute ("%d%d%d
// %d:%d"), and number and text ("%d   %s"). Nothing happens with any other condition, or when the
// log cannot be opened. The caller goes on in every case.
TRUNNION_API void slAssert(int number, char *text, int condition);

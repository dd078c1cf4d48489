#ifndef OLMKIT_FILTER_BOUNDARY_ROUTINES_H
#define OLMKIT_FILTER_BOUNDARY_ROUTINES_H

#include "filter/boundary/Layout.h"

/*
 * The host's routines that the module calls, installed one by one with VwSetSoRtn. Each gets the
 * two words of VwSetUser as its last arguments. Everything that a pointer names is borrowed for
 * the call.
 */

/* The ids of VwSetSoRtn; the others are stored and never called. */
enum {
    SoRtnPutCharId = 1,
    SoRtnCellEndId = 2,
    SoRtnBreakId = 5,
    SoRtnPutValueId = 9,
    SoRtnColumnsBeginId = 13,
    SoRtnColumnsEndId = 17,
    SoRtnSectionTypeId = 18,
    SoRtnSectionNameId = 19,
    SoRtnBailId = 20,
    SoRtnTagBeginId = 49,
    SoRtnTagEndId = 50,
    SoRtnCharsetId = 90,
    SoRtnColumnDoneId = 99,
    SoRtnColumnTypeId = 100,
    SoRtnColumnFormatId = 101,
    SoRtnCellBeginId = 103,
    SoRtnPutTextId = 129
};

/* The code of UTF-16 text in the machine's byte order. */
#define CharsetUtf16 0x14B00000U

/* The number that SoRtnBail gets: a failed lock, and any failure while one entry is scanned. */
enum { BailFailure = 461 };

/* First argument of SoRtnBreak. */
enum {
    BreakArchive = 2, /* the archive is at its end */
    BreakRow = 5,     /* a row is complete */
    BreakEntry = 11   /* a directory entry is done; a non-zero answer pauses the scan */
};

/* Argument of SoRtnCellEnd. */
enum { CellEndCode = 13 };

/* First argument of SoRtnTagBegin and SoRtnTagEnd. */
#define TaggedText 0x290004U

#ifdef __cplusplus
extern "C" {
#endif

/* Any routine; cast to its own type before it is called. */
typedef void (*SoRoutine)(void);

/* One character into the open cell. */
typedef void (*SoRtnPutChar)(uint16_t character, uint64_t user0, uint64_t user1);
/* The cell is complete. */
typedef void (*SoRtnCellEnd)(uint16_t code, uint64_t user0, uint64_t user1);
/* A break of the section; non-zero asks for a pause. */
typedef uint16_t (*SoRtnBreak)(uint16_t code, uint32_t zero, uint64_t user0, uint64_t user1);
/* A cell's binary value; the column tells its size. */
typedef void (*SoRtnPutValue)(const void* value, uint64_t user0, uint64_t user1);
typedef void (*SoRtnColumnsBegin)(uint64_t user0, uint64_t user1);
typedef void (*SoRtnColumnsEnd)(uint64_t user0, uint64_t user1);
typedef void (*SoRtnSectionType)(uint32_t type, uint32_t zero0, uint32_t zero1, uint64_t user0,
                                 uint64_t user1);
/* Narrow text, terminated. */
typedef void (*SoRtnSectionName)(const char* name, uint64_t user0, uint64_t user1);
/* A failure; see BailFailure. */
typedef void (*SoRtnBail)(uint32_t failure, uint64_t user0, uint64_t user1);
/* Opens a tagged text: its index in the row, from 0, and the tag's id. */
typedef void (*SoRtnTagBegin)(uint32_t kind, uint32_t tagIndex, const uint32_t* tagId,
                              uint64_t user0, uint64_t user1);
typedef void (*SoRtnTagEnd)(uint32_t kind, uint32_t tagIndex, uint64_t user0, uint64_t user1);
typedef void (*SoRtnCharset)(uint32_t charset, uint64_t user0, uint64_t user1);
typedef void (*SoRtnColumnDone)(uint32_t number0, uint32_t number1, uint32_t number2,
                                uint32_t number3, uint64_t user0, uint64_t user1);
typedef void (*SoRtnColumnType)(uint32_t number0, uint32_t number1, uint32_t number2,
                                uint64_t user0, uint64_t user1);
typedef void (*SoRtnColumnFormat)(uint32_t number0, uint32_t number1, uint32_t number2,
                                  uint64_t user0, uint64_t user1);
typedef void (*SoRtnCellBegin)(uint64_t user0, uint64_t user1);
/* Text into the open cell; `length` in units, its higher bits dropped. */
typedef int32_t (*SoRtnPutText)(const uint16_t* text, uint16_t length, uint32_t charset,
                                uint64_t user0, uint64_t user1);

#ifdef __cplusplus
}
#endif

#endif

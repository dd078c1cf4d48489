#ifndef OLMKIT_FILTER_BOUNDARY_ROUTINES_H
#define OLMKIT_FILTER_BOUNDARY_ROUTINES_H

/*
 * The routines by which the module delivers a listing. The host implements them and installs each
 * under its id with VwSetSoRtn. Every routine gets the two words of VwSetUser as its last
 * arguments. What a pointer argument points to is valid only during the call.
 *
 * The numbers that the comments do not explain have a meaning only to the host.
 */

#include "filter/boundary/Layout.h"

/* Ids of the routines that the module calls. Routines of other ids are stored and never called. */
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

/* The character set of all text: UTF-16 in the byte order of the machine. */
#define CharsetUtf16 0x14B00000U

/* The only failure that SoRtnBail gets: a failed lock, or any failure while an entry is listed. */
enum { BailFailure = 461 };

/* Codes of SoRtnBreak. */
enum {
    BreakArchive = 2, /* the end of the archive */
    BreakRow = 5,     /* the end of a row */
    BreakEntry = 11   /* the end of an archive entry; a non-zero answer pauses the listing */
};

/* The only code of SoRtnCellEnd. */
enum { CellEndCode = 13 };

/* First argument of SoRtnTagBegin and SoRtnTagEnd. */
#define TaggedText 0x290004U

/* Values of special column 6: the kind of the item. A contact group is listed as a contact. */
enum {
    SpecialKindMail = 0x30000,
    SpecialKindContact = 0x40000,
    SpecialKindAppointment = 0x50000,
    SpecialKindNote = 0x60000,
    SpecialKindTask = 0x70000
};

#ifdef __cplusplus
extern "C" {
#endif

/* A routine of any type; cast to its own type before it is called. */
typedef void (*SoRoutine)(void);

/* Appends one character to the open cell. */
typedef void (*SoRtnPutChar)(uint16_t character, uint64_t user0, uint64_t user1);

/* Ends the open cell. `code` is CellEndCode. */
typedef void (*SoRtnCellEnd)(uint16_t code, uint64_t user0, uint64_t user1);

/* Reports the end that `code` names. Returns non-zero to ask for a pause. */
typedef uint16_t (*SoRtnBreak)(uint16_t code, uint32_t zero, uint64_t user0, uint64_t user1);

/* Delivers the binary value of a cell: a uint32_t, or an ItemLocator in the last column. */
typedef void (*SoRtnPutValue)(const void* value, uint64_t user0, uint64_t user1);

/* Begins and ends the definitions of the columns. */
typedef void (*SoRtnColumnsBegin)(uint64_t user0, uint64_t user1);
typedef void (*SoRtnColumnsEnd)(uint64_t user0, uint64_t user1);

/* Announces the section: its type, which is 10, and its name as terminated narrow text. */
typedef void (*SoRtnSectionType)(uint32_t type, uint32_t zero0, uint32_t zero1, uint64_t user0,
                                 uint64_t user1);
typedef void (*SoRtnSectionName)(const char* name, uint64_t user0, uint64_t user1);

/* Reports a failure. `failure` is BailFailure. */
typedef void (*SoRtnBail)(uint32_t failure, uint64_t user0, uint64_t user1);

/*
 * Begin and end a tagged text. `kind` is TaggedText, `tagIndex` the number of the text in its row,
 * from 0.
 */
typedef void (*SoRtnTagBegin)(uint32_t kind, uint32_t tagIndex, const uint32_t* tagId,
                              uint64_t user0, uint64_t user1);
typedef void (*SoRtnTagEnd)(uint32_t kind, uint32_t tagIndex, uint64_t user0, uint64_t user1);

/* Sets the character set of the text that follows. `charset` is CharsetUtf16. */
typedef void (*SoRtnCharset)(uint32_t charset, uint64_t user0, uint64_t user1);

/* Define one column, in the order SoRtnColumnType, SoRtnColumnFormat, SoRtnColumnDone. */
typedef void (*SoRtnColumnType)(uint32_t number0, uint32_t number1, uint32_t number2,
                                uint64_t user0, uint64_t user1);
typedef void (*SoRtnColumnFormat)(uint32_t number0, uint32_t number1, uint32_t number2,
                                  uint64_t user0, uint64_t user1);
typedef void (*SoRtnColumnDone)(uint32_t number0, uint32_t number1, uint32_t number2,
                                uint32_t number3, uint64_t user0, uint64_t user1);

/* Begins a cell. */
typedef void (*SoRtnCellBegin)(uint64_t user0, uint64_t user1);

/*
 * Appends text to the open cell. `length` is the low 16 bits of the number of units. The module
 * ignores the result.
 */
typedef int32_t (*SoRtnPutText)(const uint16_t* text, uint16_t length, uint32_t charset,
                                uint64_t user0, uint64_t user1);

#ifdef __cplusplus
}
#endif

#endif

#ifndef OLMKIT_FILTER_BOUNDARY_READER_H
#define OLMKIT_FILTER_BOUNDARY_READER_H

/*
 * The XML pull reader of the host. The host implements these functions; the module imports them.
 *
 * Text is UTF-16 in the byte order of the machine, and lengths are in units of 16 bits. The
 * functions return a status, which is 0 for success unless the function's own comment says
 * otherwise.
 */

#include "filter/boundary/HostStream.h"
#include "filter/boundary/Layout.h"

/* The state of one reader. The module provides the memory; only the host reads and writes it. */
typedef struct UTXMLReader {
    uint64_t host[72];
} UTXMLReader;

OLM_ASSERT_SIZE(UTXMLReader, 576);

/* One tag. The opening and the closing tag of an element have the same `id`. */
typedef struct UTXMLTagRecord {
    uint32_t host0; /* the host's own; the module returns it with UTXMLSkipTag */
    uint32_t id;    /* value of the name in the tag maps, or UTXML_UNKNOWN_TAG */
    uint32_t flags; /* UTXML_CLOSING_TAG; the other bits are the host's own */
    uint32_t host1; /* as host0 */
} UTXMLTagRecord;

OLM_ASSERT_OFFSET(UTXMLTagRecord, id, 4);
OLM_ASSERT_OFFSET(UTXMLTagRecord, flags, 8);
OLM_ASSERT_SIZE(UTXMLTagRecord, 16);

/* UTXMLTagRecord.id of an element whose name is in no tag map. */
#define UTXML_UNKNOWN_TAG 0xFFFFFFFFU

/* Bit of UTXMLTagRecord.flags that marks a closing tag. */
#define UTXML_CLOSING_TAG 0x1000U

/* One row of a tag map: the id of every element of that name. */
typedef struct UTXML_STRVALPAIR {
    uint64_t value;
    const char* name; /* terminated */
} UTXML_STRVALPAIR;

OLM_ASSERT_OFFSET(UTXML_STRVALPAIR, value, 0);
OLM_ASSERT_OFFSET(UTXML_STRVALPAIR, name, 8);
OLM_ASSERT_SIZE(UTXML_STRVALPAIR, 16);

/*
 * A saved state: a position in a document, with the elements that are open there. The module
 * copies it by value and does not read it, so it must not contain a pointer.
 */
typedef struct tagUTXMLSaveData {
    uint64_t host[6];
} tagUTXMLSaveData;

OLM_ASSERT_SIZE(tagUTXMLSaveData, 48);

/* The one option of UTXMLSetOption in use: white space between elements is not text. */
enum { UTXML_OPTION_SKIP_SPACE = 4 };

/* Status of UTXMLReadNextTag: text of the element is unread, and no tag was read. */
enum { UTXML_CONTENT_PENDING = 101 };

/* A length or count of a text that ends at its first 0 unit and is to be counted by the module. */
#define UTXML_COUNT_IT 0xFFFFFFFFU

#ifdef __cplusplus
extern "C" {
#endif

/* Prepares the reader on `stream`, which is borrowed until UTXMLDeInit. */
int16_t UTXMLInit(UTXMLReader* reader, HostStream* stream);

/* Ends the reader. The stream stays open. */
void UTXMLDeInit(UTXMLReader* reader);

/* Sets an option. The module calls it once, with UTXML_OPTION_SKIP_SPACE and the value 1. */
int16_t UTXMLSetOption(UTXMLReader* reader, uint32_t option, uint32_t value);

/*
 * Adds a tag map of `count` rows in ascending byte order of their names, under the namespace
 * `space`, which is always empty. The rows and their names are borrowed until UTXMLDeInit. Maps
 * add up; a later row replaces an earlier one of the same name. Both reserved arguments are 0.
 */
int16_t UTXMLAddTagMap(UTXMLReader* reader, const char* space, uint32_t reserved0,
                       uint32_t reserved1, const UTXML_STRVALPAIR* rows, uint16_t count);

/*
 * Reads the next tag into `*tag`; the module ignores `*extra`. Returns UTXML_CONTENT_PENDING, but
 * never twice in a row, when text is unread; a negative status at the end of the document or when
 * it is broken, and then leaves both outputs as they were.
 */
int16_t UTXMLReadNextTag(UTXMLReader* reader, UTXMLTagRecord* tag, uint64_t* extra);

/* Skips the text that UTXML_CONTENT_PENDING reported. */
int16_t UTXMLSkipContent(UTXMLReader* reader);

/*
 * Stores the next attribute of the last tag read. Returns non-zero when no attribute is left.
 * `*name` and `*value` stay valid until the next call on the reader; either may be null. Each
 * length may be UTXML_COUNT_IT. The module ignores `*word`.
 */
int16_t UTXMLGetNextAttribute(UTXMLReader* reader, uint32_t* word, const uint16_t** name,
                              const uint16_t** value, uint32_t* nameLength, uint32_t* valueLength);

/*
 * Reads at most `capacity` units of the text after the last opening tag read, and stores their
 * number, or UTXML_COUNT_IT, in `*count`. The buffer is all zero at the first read of a text.
 * Returns non-zero on failure and at the end of the text. `always1` is 1.
 */
int16_t UTXMLReadContent(UTXMLReader* reader, uint32_t always1, uint16_t* buffer, uint32_t capacity,
                         uint32_t* count);

/*
 * Moves to the position after the closing tag of the element that a UTXMLTagRecord opened. The
 * record is passed in two halves.
 */
int16_t UTXMLSkipTag(UTXMLReader* reader, uint64_t firstHalf, uint64_t secondHalf);

/* Stores the state of the reader after the last tag read. */
int16_t UTXMLGetStateInfo(UTXMLReader* reader, tagUTXMLSaveData* save);

/*
 * Restores a saved state, which may come from another reader on the same entry: the next tag is the
 * one that followed when `save` was stored.
 */
int16_t UTXMLRestoreStateInfo(UTXMLReader* reader, const tagUTXMLSaveData* save);

#ifdef __cplusplus
}
#endif

#endif

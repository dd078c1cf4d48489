#ifndef OLMKIT_FILTER_BOUNDARY_READER_H
#define OLMKIT_FILTER_BOUNDARY_READER_H

#include "filter/boundary/HostStream.h"
#include "filter/boundary/Layout.h"

/* The host's reader state. The module gives the room, the host alone knows what is in it. */
typedef struct UTXMLReader {
    uint64_t host[72];
} UTXMLReader;

OLM_ASSERT_SIZE(UTXMLReader, 576);

/* `id` of an element whose name no tag map holds. */
#define UTXML_UNKNOWN_TAG 0xFFFFFFFFU

/* Bit of `flags`: a closing tag. */
#define UTXML_CLOSING_TAG 0x1000U

/* One tag as the reader delivers it. Opening and closing tag of an element have the same `id`. */
typedef struct UTXMLTagRecord {
    uint32_t host0; /* the host's own; goes back to it with UTXMLSkipTag */
    uint32_t id;    /* value of the tag map, or UTXML_UNKNOWN_TAG */
    uint32_t flags; /* UTXML_CLOSING_TAG; the other bits are the host's */
    uint32_t host1; /* as host0 */
} UTXMLTagRecord;

OLM_ASSERT_OFFSET(UTXMLTagRecord, id, 4);
OLM_ASSERT_OFFSET(UTXMLTagRecord, flags, 8);
OLM_ASSERT_SIZE(UTXMLTagRecord, 16);

/* One row of a tag map: the number that the reader gives to every element of that name. */
typedef struct UTXML_STRVALPAIR {
    uint64_t value;
    const char* name; /* terminated; must outlive the reader */
} UTXML_STRVALPAIR;

OLM_ASSERT_OFFSET(UTXML_STRVALPAIR, value, 0);
OLM_ASSERT_OFFSET(UTXML_STRVALPAIR, name, 8);
OLM_ASSERT_SIZE(UTXML_STRVALPAIR, 16);

/*
 * A reader's place in its document, filled and taken back by the host. The module copies it by
 * value and looks at nothing in it, so it may hold no pointer.
 */
typedef struct tagUTXMLSaveData {
    uint64_t host[6];
} tagUTXMLSaveData;

OLM_ASSERT_SIZE(tagUTXMLSaveData, 48);

/*
 * The host's XML pull reader. Whoever loads the module provides these functions. Text is UTF-16
 * in the machine's byte order, lengths are in units. A status of 0 is success unless said
 * otherwise.
 */

/* Status of UTXMLReadNextTag: text of the element is unread, and no tag was read. */
enum { UTXML_CONTENT_PENDING = 101 };

/* A length or count that says: the text ends at its first 0 unit. */
#define UTXML_COUNT_IT 0xFFFFFFFFU

#ifdef __cplusplus
extern "C" {
#endif

/* Prepares the reader on `stream`, which is borrowed until UTXMLDeInit. */
int16_t UTXMLInit(UTXMLReader* reader, HostStream* stream);

/* Ends the reader; the stream stays open. */
void UTXMLDeInit(UTXMLReader* reader);

/* Sets an option. Number 4, value 1 is the only one in use: white space between elements is no
 * text. */
int16_t UTXMLSetOption(UTXMLReader* reader, uint32_t option, uint32_t value);

/*
 * Adds `count` rows, which are borrowed until UTXMLDeInit, under the namespace `space` (always
 * empty). Maps add up; a later row of the same name replaces an earlier one.
 */
int16_t UTXMLAddTagMap(UTXMLReader* reader, const char* space, uint32_t reserved0,
                       uint32_t reserved1, const UTXML_STRVALPAIR* rows, uint16_t count);

/*
 * Reads the next tag. UTXML_CONTENT_PENDING once when text is unread; negative, with both
 * outputs left as they were, at the end of the document and when it is broken.
 */
int16_t UTXMLReadNextTag(UTXMLReader* reader, UTXMLTagRecord* tag, uint64_t* extra);

/* Skips the text that UTXML_CONTENT_PENDING told of. */
int16_t UTXMLSkipContent(UTXMLReader* reader);

/*
 * 0 while it delivers an attribute of the tag read last, non-zero when none is left. Name and
 * value stay valid until the next call on the reader. A length may be UTXML_COUNT_IT.
 */
int16_t UTXMLGetNextAttribute(UTXMLReader* reader, uint32_t* word, const uint16_t** name,
                              const uint16_t** value, uint32_t* nameLength, uint32_t* valueLength);

/*
 * Reads at most `capacity` units of the text behind the opening tag read last, and stores how
 * many came (or UTXML_COUNT_IT). Non-zero on failure and at the end of the text. `always1` is 1.
 */
int16_t UTXMLReadContent(UTXMLReader* reader, uint32_t always1, uint16_t* buffer, uint32_t capacity,
                         uint32_t* count);

/* Moves behind the closing tag of the element that a UTXMLTagRecord opened, given in two halves. */
int16_t UTXMLSkipTag(UTXMLReader* reader, uint64_t firstHalf, uint64_t secondHalf);

/* Stores the reader's place: behind the tag read last. */
int16_t UTXMLGetStateInfo(UTXMLReader* reader, tagUTXMLSaveData* save);

/* Puts the reader back: the next tag is the one behind the place where `save` was taken. */
int16_t UTXMLRestoreStateInfo(UTXMLReader* reader, const tagUTXMLSaveData* save);

#ifdef __cplusplus
}
#endif

#endif

/*
 * The XML reader that the module uses, with expat.
 *
 * A document is parsed completely into an array of tags, with texts in UTF-16; a saved state is
 * little more than the index of a tag. Better: parse while tags are read, so that memory doesn't
 * grow with the document, and save a position in the entry's bytes, so that restoring is a seek.
 */
#include <stdlib.h>
#include <string.h>

#include <expat.h>

#include "minimal_host.h"
#include "utf16.h"

enum { ChunkSize = 65536 };

/* White space between elements isn't text. */
enum { WhiteSpaceOption = 4, WhiteSpaceIgnored = 1 };

/* Set in the flags of an opening tag that was read; the module reads only UTXML_CLOSING_TAG. */
enum { IsNumbered = 1 };

/* Texts are offsets into `units`; each ends with a 0 unit. */
typedef struct Tag {
    size_t name;
    size_t attributes; /* names and values alternately, up to an empty name */
    size_t text;       /* after an opening tag */
    size_t partner; /* the element's closing or opening tag; until closed, its parent's opening */
    uint32_t flags;
    uint32_t id;
} Tag;

/* The position of a reader: the contents of a saved state. */
typedef struct TagPlace {
    size_t next;         /* the next tag */
    size_t text;         /* the unread text of the tag before it */
    uint64_t isReported; /* that there is unread text */
} TagPlace;

typedef struct Document {
    Tag* tags; /* the first is the document itself */
    size_t tagCount;
    uint16_t* units; /* the first is the empty text */
    size_t unitCount;
    size_t unitCapacity;
    size_t open;            /* while parsing: the innermost open element */
    UTXML_STRVALPAIR* rows; /* of all tag maps */
    size_t rowCount;
    const UTXML_STRVALPAIR* lastMap;
    TagPlace place;
    size_t attribute; /* the next one to return */
} Document;

_Static_assert(sizeof(TagPlace) <= sizeof(tagUTXMLSaveData), "a place must fit into a saved state");

static Document* documentOf(const UTXMLReader* reader) {
    return (Document*)(uintptr_t)reader->host[0];
}

/* ---- What expat calls ---- */

/* Returns the offset of the first unit. A terminator is appended if `size` includes it. */
static size_t append(Document* document, const char* text, size_t size) {
    const size_t place = document->unitCount;
    if (place + size > document->unitCapacity) {
        document->unitCapacity = 2 * (place + size);
        document->units =
            need(realloc(document->units, document->unitCapacity * sizeof *document->units));
    }
    document->unitCount += toUtf16(text, size, document->units + place);
    return place;
}

static Tag* addTag(Document* document) {
    const size_t count = document->tagCount;
    if ((count & (count - 1)) == 0) { /* the capacity is the next power of two */
        const size_t capacity = count == 0 ? 1 : 2 * count;
        document->tags = need(realloc(document->tags, capacity * sizeof(Tag)));
    }
    document->tags[count] = (Tag){.partner = document->open, .id = UTXML_UNKNOWN_TAG};
    ++document->tagCount;
    return &document->tags[count];
}

static int isBlank(uint16_t unit) {
    return unit == ' ' || unit == '\t' || unit == '\r' || unit == '\n';
}

/* White space is text only when the element's own closing tag follows. */
static void endText(Document* document, int isBeforeOpening) {
    append(document, "", 1);
    const size_t text = document->tags[document->tagCount - 1].text;
    size_t unit = text;
    while (isBlank(document->units[unit])) {
        ++unit;
    }
    if (isBeforeOpening && document->units[unit] == 0) {
        document->units[text] = 0;
    }
}

static void XMLCALL onOpening(void* user, const XML_Char* name, const XML_Char** attributes) {
    Document* const document = user;
    endText(document, 1);
    Tag* const tag = addTag(document);
    document->open = document->tagCount - 1;
    tag->name = append(document, name, strlen(name) + 1);
    tag->attributes = document->unitCount;
    for (; *attributes != NULL; ++attributes) {
        append(document, *attributes, strlen(*attributes) + 1);
    }
    append(document, "", 1);
    tag->text = document->unitCount;
}

static void XMLCALL onClosing(void* user, const XML_Char* name) {
    Document* const document = user;
    (void)name;
    endText(document, 0);
    Tag* const tag = addTag(document);
    Tag* const opening = &document->tags[document->open];
    tag->flags = UTXML_CLOSING_TAG;
    tag->name = opening->name;
    document->open = opening->partner;
    opening->partner = document->tagCount - 1;
}

static void XMLCALL onText(void* user, const XML_Char* text, int size) {
    Document* const document = user;
    if (document->tags[document->tagCount - 1].flags != UTXML_CLOSING_TAG) {
        append(document, text, (size_t)size);
    }
}

/* Nothing outside the entry is ever read: a document that refers to it ends there, as broken. */
static int XMLCALL refuseExternal(XML_Parser parser, const XML_Char* context, const XML_Char* base,
                                  const XML_Char* systemId, const XML_Char* publicId) {
    (void)parser, (void)context, (void)base, (void)systemId, (void)publicId;
    return XML_STATUS_ERROR;
}

/* Keeps what comes before a fault; text there belongs to the last tag. */
static void parse(Document* document, HostStream* stream) {
    XML_Parser parser = need(XML_ParserCreate(NULL));
    XML_SetUserData(parser, document);
    XML_SetElementHandler(parser, onOpening, onClosing);
    XML_SetCharacterDataHandler(parser, onText);
    XML_SetExternalEntityRefHandler(parser, refuseExternal);
    enum XML_Status status = XML_STATUS_OK;
    int isLast = 0;
    while (status == XML_STATUS_OK && !isLast) {
        uint32_t count = 0;
        void* const buffer = need(XML_GetBuffer(parser, ChunkSize));
        isLast = stream->read(stream, buffer, ChunkSize, &count) != 0;
        status = XML_ParseBuffer(parser, (int)count, isLast);
    }
    if (status != XML_STATUS_OK) {
        fault(nameOf(stream), XML_ErrorString(XML_GetErrorCode(parser)));
    }
    endText(document, 0);
    XML_ParserFree(parser);
}

/* ---- What the module calls ---- */

int16_t UTXMLInit(UTXMLReader* reader, HostStream* stream) {
    Document* const document = need(calloc(1, sizeof *document));
    append(document, "", 1);
    addTag(document);
    document->place.next = 1;
    parse(document, stream);
    reader->host[0] = (uint64_t)(uintptr_t)document;
    return 0;
}

void UTXMLDeInit(UTXMLReader* reader) {
    Document* const document = documentOf(reader);
    free(document->tags);
    free(document->units);
    free(document->rows);
    free(document);
}

/* The module sets only this option, and this reader always behaves that way. */
int16_t UTXMLSetOption(UTXMLReader* reader, uint32_t option, uint32_t value) {
    (void)reader;
    return option == WhiteSpaceOption && value == WhiteSpaceIgnored ? 0 : -1;
}

/* The module adds the same map again for each item of a document, so that must be cheap. */
int16_t UTXMLAddTagMap(UTXMLReader* reader, const char* space, uint32_t reserved0,
                       uint32_t reserved1, const UTXML_STRVALPAIR* rows, uint16_t count) {
    Document* const document = documentOf(reader);
    (void)space, (void)reserved0, (void)reserved1;
    if (rows != document->lastMap && count != 0) {
        const size_t total = document->rowCount + count;
        document->rows = need(realloc(document->rows, total * sizeof *rows));
        memcpy(document->rows + document->rowCount, rows, count * sizeof *rows);
        document->rowCount = total;
        document->lastMap = rows;
    }
    return 0;
}

/* The last row of a name counts. Better: a hash table. */
static uint32_t numberOf(const Document* document, const uint16_t* name) {
    for (size_t row = document->rowCount; row-- > 0;) {
        const char* const candidate = document->rows[row].name;
        size_t i = 0;
        while (candidate[i] != '\0' && name[i] == (unsigned char)candidate[i]) {
            ++i;
        }
        if (candidate[i] == '\0' && name[i] == 0) {
            return (uint32_t)document->rows[row].value;
        }
    }
    return UTXML_UNKNOWN_TAG;
}

/* A closing tag has the number that its opening tag was read with, if it was read. */
static void number(Document* document, Tag* tag) {
    const Tag* const opening = &document->tags[tag->partner];
    if (tag->flags == UTXML_CLOSING_TAG && opening->flags == IsNumbered) {
        tag->id = opening->id;
        return;
    }
    tag->id = numberOf(document, document->units + tag->name);
    tag->flags |= tag->flags == UTXML_CLOSING_TAG ? 0 : IsNumbered;
}

int16_t UTXMLReadNextTag(UTXMLReader* reader, UTXMLTagRecord* tag, uint64_t* extra) {
    Document* const document = documentOf(reader);
    TagPlace* const place = &document->place;
    if (!place->isReported && document->units[place->text] != 0) {
        place->isReported = 1;
        return UTXML_CONTENT_PENDING;
    }
    const size_t index = place->next;
    document->attribute = 0;
    if (index == document->tagCount) {
        return -1;
    }
    Tag* const found = &document->tags[index];
    number(document, found);
    *place = (TagPlace){.next = index + 1, .text = found->text};
    document->attribute = found->attributes;
    *tag = (UTXMLTagRecord){.host0 = (uint32_t)index, .id = found->id, .flags = found->flags};
    *extra = index;
    return 0;
}

int16_t UTXMLSkipContent(UTXMLReader* reader) {
    documentOf(reader)->place.text = 0;
    return 0;
}

int16_t UTXMLGetNextAttribute(UTXMLReader* reader, uint32_t* word, const uint16_t** name,
                              const uint16_t** value, uint32_t* nameLength, uint32_t* valueLength) {
    Document* const document = documentOf(reader);
    const uint16_t* unit = document->units + document->attribute;
    if (*unit == 0) {
        return 1;
    }
    *word = 0;
    for (*name = unit; *unit != 0; ++unit) {
    }
    for (*value = ++unit; *unit != 0; ++unit) {
    }
    *nameLength = UTXML_COUNT_IT;
    *valueLength = UTXML_COUNT_IT;
    document->attribute = (size_t)(unit + 1 - document->units);
    return 0;
}

int16_t UTXMLReadContent(UTXMLReader* reader, uint32_t always1, uint16_t* buffer, uint32_t capacity,
                         uint32_t* count) {
    Document* const document = documentOf(reader);
    const uint16_t* const text = document->units + document->place.text;
    (void)always1;
    for (*count = 0; *count < capacity && text[*count] != 0; ++*count) {
        buffer[*count] = text[*count];
    }
    document->place.text += *count;
    return *count == 0 ? 1 : 0;
}

/* Fails for a tag whose element is closed already or never closes. */
int16_t UTXMLSkipTag(UTXMLReader* reader, uint64_t firstHalf, uint64_t secondHalf) {
    Document* const document = documentOf(reader);
    TagPlace* const place = &document->place;
    const size_t opening = (uint32_t)firstHalf;
    (void)secondHalf;
    if (opening >= place->next || document->tags[opening].flags == UTXML_CLOSING_TAG) {
        return -1;
    }
    const size_t closing = document->tags[opening].partner;
    if (closing > opening && closing < place->next) {
        return -1;
    }
    document->attribute = 0;
    *place = (TagPlace){.next = closing > opening ? closing + 1 : document->tagCount};
    return closing > opening ? 0 : -1;
}

int16_t UTXMLGetStateInfo(UTXMLReader* reader, tagUTXMLSaveData* save) {
    memset(save, 0, sizeof *save);
    memcpy(save, &documentOf(reader)->place, sizeof(TagPlace));
    return 0;
}

/* The state may be from another reader of the same entry, which parsed the same tags. */
int16_t UTXMLRestoreStateInfo(UTXMLReader* reader, const tagUTXMLSaveData* save) {
    Document* const document = documentOf(reader);
    memcpy(&document->place, save, sizeof(TagPlace));
    document->attribute = 0;
    return 0;
}

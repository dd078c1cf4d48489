#ifndef OLMKIT_FILTER_STORAGE_WRITERERRORS_H
#define OLMKIT_FILTER_STORAGE_WRITERERRORS_H

// Codes of the qor::Exception that ends an item.
enum WriterError : unsigned int {
    ErrUnknown = 15,            // an item or a property that is in no table
    ErrNoStorage = 0xFFFFFFFF,  // -1: there is no storage to make another one in
    ErrTagTable = 0xFFFFFFFE,   // -2: the reader refused the tag table of a writer
    ErrShortWrite = 0xFFFFFFF1, // -15: a stream took fewer bytes than were written to it
};

#endif

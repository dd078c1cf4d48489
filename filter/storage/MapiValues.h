#ifndef OLMKIT_FILTER_STORAGE_MAPIVALUES_H
#define OLMKIT_FILTER_STORAGE_MAPIVALUES_H

// Values of properties that more than one writer uses.

// PidTagRecipientType. Of an appointment: required, optional and resource.
enum RecipientType : unsigned int {
    RecipientTo = 1,
    RecipientCc = 2,
    RecipientBcc = 3,
};

// PidTagAccess: the object can be read.
inline constexpr int accessRead = 2;

#endif

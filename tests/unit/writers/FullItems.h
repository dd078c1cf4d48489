#ifndef OLMKIT_TESTS_UNIT_WRITERS_FULLITEMS_H
#define OLMKIT_TESTS_UNIT_WRITERS_FULLITEMS_H

#include "tests/fakehost/Extraction.h"

// Return an item of each kind with every element that it can have, in the order of real archives.
// The appointment's recurrence is that of addWeekly(), the task's that of addDaily().
fakehost::ItemDocument fullMail();
fakehost::ItemDocument fullAppointment();
fakehost::ItemDocument fullTask();
fakehost::ItemDocument fullNote();
fakehost::ItemDocument fullContact();
fakehost::ItemDocument fullGroup();

// Returns a run with the entry that one of the two attachments of fullMail() names.
fakehost::ItemRun tideArchive();

#endif

#ifndef OLMKIT_FILTER_OLMFILTER_H
#define OLMKIT_FILTER_OLMFILTER_H

/*
 * Everything that crosses between the module and its host: the records, the functions that the
 * module exports and those that it imports. Plain C11. A host needs this header and the module.
 */

#include "filter/boundary/Archive.h"
#include "filter/boundary/EntryPoints.h"
#include "filter/boundary/HostStream.h"
#include "filter/boundary/Layout.h"
#include "filter/boundary/Memory.h"
#include "filter/boundary/Reader.h"
#include "filter/boundary/Request.h"
#include "filter/boundary/Routines.h"
#include "filter/boundary/Storage.h"

#endif

#ifndef OLMKIT_FILTER_OLMFILTER_H
#define OLMKIT_FILTER_OLMFILTER_H

/*
 * The boundary between the module and its host, in plain C11: the records that cross it, the
 * functions that the module exports and those that it imports. A host includes this header alone.
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

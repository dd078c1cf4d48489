#ifndef OLMKIT_FILTER_OLMFILTER_H
#define OLMKIT_FILTER_OLMFILTER_H

/*
 * Everything that crosses between the module and its host: the records, the functions that the
 * module exports and those that it imports. Plain C11. A host needs this header and the module.
 */

#include "filter/frame/ArchiveOpenRequest.h"
#include "filter/frame/EntryPoints.h"
#include "filter/frame/FileInformation.h"
#include "filter/frame/OverlayId.h"
#include "filter/frame/SODOSPECIALARC.h"
#include "filter/frame/SYSNative.h"
#include "filter/frame/ScanPosition.h"
#include "filter/frame/SoRoutines.h"
#include "filter/layout.h"
#include "filter/listing/ItemLocator.h"
#include "filter/storage/IOStorage.h"
#include "filter/storage/RootStorageSpec.h"
#include "filter/storage/StorageSpec.h"
#include "filter/xml/ArchiveDirectory.h"
#include "filter/xml/ArchiveEntry.h"
#include "filter/xml/HostStream.h"
#include "filter/xml/MemberOpenRequest.h"
#include "filter/xml/UTXML.h"
#include "filter/xml/UTXMLReader.h"
#include "filter/xml/UTXMLTagRecord.h"
#include "filter/xml/UTXML_STRVALPAIR.h"
#include "filter/xml/tagUTXMLSaveData.h"

#endif

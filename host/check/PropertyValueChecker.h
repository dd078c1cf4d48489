#ifndef OLMKIT_HOST_CHECK_PROPERTYVALUECHECKER_H
#define OLMKIT_HOST_CHECK_PROPERTYVALUECHECKER_H

#include <span>
#include <string>
#include <vector>

#include "host/check/CompoundChecker.h"
#include "host/check/FindingList.h"
#include "host/check/PropertyStreamChecker.h"
#include "host/check/StorageContents.h"
#include "host/message/PropertyType.h"

namespace olmhost {

// Checks that each value of a storage's properties has its streams, of the sizes that the property
// stream states, and that each such stream has its property (MS-OXMSG 2.1).
class PropertyValueChecker {
public:
    // All are borrowed. `entries` and `contents` are those of one storage that has a property
    // stream; check() sorts the entries by their tags.
    PropertyValueChecker(CompoundChecker& compound, FindingList& findings,
                         const StorageContents& contents, std::vector<PropertyEntry>& entries)
        : compound(compound), findings(findings), contents(contents), entries(entries),
          path(compound.entries().path(*contents.propertyStream)) {}

    void check();

private:
    using Values = std::span<const ValueChild>;

    void add(FindingCode code, std::uint32_t tag, const std::string& text);
    void checkTwice();
    void checkValues();
    void checkProperty(const PropertyEntry& entry, Values values);
    void checkStream(const PropertyEntry& entry, const TypeRow& row, const ValueChild& stream);
    void checkObject(const PropertyEntry& entry, const ValueChild& value);
    void checkList(const PropertyEntry& entry, const TypeRow& row, Values values);
    void checkListValue(const PropertyEntry& entry, std::uint32_t index, std::uint32_t size,
                        const ValueChild& value);
    void addStray(const ValueChild& value);
    bool endsInZero(const PropertyEntry& entry, EntryId stream);

    CompoundChecker& compound;
    FindingList& findings;
    const StorageContents& contents;
    std::vector<PropertyEntry>& entries;
    std::string path; // of the property stream
};

} // namespace olmhost

#endif

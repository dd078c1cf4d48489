#include "host/compound/StorageHandle.h"

#include "host/compound/CompoundOutput.h"

namespace olmhost {

CompoundHandle* StorageHandle::createStorage(std::u16string_view name) {
    return output.createStorage(entry, name);
}

CompoundHandle* StorageHandle::createStream(std::u16string_view name) {
    return output.createStream(entry, name);
}

bool StorageHandle::setClassId(const ClassId& id) {
    if (!isRoot() || writer.finished()) {
        return false;
    }
    writer.setClassId(id);
    return true;
}

void StorageHandle::end() {
    if (isRoot()) {
        output.finish();
    }
    CompoundHandle::end();
}

} // namespace olmhost

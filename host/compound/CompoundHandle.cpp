#include "host/compound/CompoundHandle.h"

#include "host/compound/CompoundOutput.h"

namespace olmhost {

void CompoundHandle::end() {
    settle();
    output.release(*this);
}

} // namespace olmhost

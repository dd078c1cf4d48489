#include "tests/unit/writers/ItemKinds.h"

#include <ostream>

#include "filter/writers/OLMMsgCalWriter.h"
#include "filter/writers/OLMMsgContactGrpWriter.h"
#include "filter/writers/OLMMsgContactWriter.h"
#include "filter/writers/OLMMsgMailWriter.h"
#include "filter/writers/OLMMsgNoteWriter.h"
#include "filter/writers/OLMMsgTaskWriter.h"
#include "tests/unit/writers/FullItems.h"

using namespace fakehost;

namespace {

template <class Writer>
std::unique_ptr<OLMMsgWriter> writerOf(SODOSPECIALARC* request, ArchiveDirectory* archive) {
    return newWriter<Writer>(request, archive);
}

constexpr uint32_t messageFlagsTag[] = {0x0E070003};
constexpr uint32_t wholeAddressIds[] = {0x801B, 0x801A};

} // namespace

constexpr ItemKind mailKind = {
    .name = "Mail",
    .element = "email",
    .item = mail,
    .fullItem = fullMail,
    .fullRun = tideArchive,
    .writer = writerOf<OLMMsgMailWriter>,
    .messageClass = u"IPM.Note",
    .classSize = 0x12,
    .trailingEntries = "03 00 07 0E  06 00 00 00  00 00 00 00 00 00 00 00",
    .trailingTags = messageFlagsTag,
};

constexpr ItemKind appointmentKind = {
    .name = "Appointment",
    .element = "appointment",
    .item = appointment,
    .fullItem = fullAppointment,
    .writer = writerOf<OLMMsgCalWriter>,
    .messageClass = u"IPM.Appointment",
    .classSize = 0x20,
};

constexpr ItemKind taskKind = {
    .name = "Task",
    .element = "task",
    .item = task,
    .fullItem = fullTask,
    .writer = writerOf<OLMMsgTaskWriter>,
    .messageClass = u"IPM.Task",
    .classSize = 0x12,
};

constexpr ItemKind noteKind = {
    .name = "Note",
    .element = "note",
    .item = note,
    .fullItem = fullNote,
    .writer = writerOf<OLMMsgNoteWriter>,
    .messageClass = u"IPM.StickyNote",
    .classSize = 0x1E,
    .leadingEntries = "03 00 00 80  06 00 00 00  03 00 00 00 00 00 00 00"
                      "03 00 01 80  06 00 00 00  A6 00 00 00 00 00 00 00"
                      "03 00 02 80  06 00 00 00  C8 00 00 00 00 00 00 00"
                      "03 00 03 80  06 00 00 00  50 00 00 00 00 00 00 00"
                      "03 00 04 80  06 00 00 00  50 00 00 00 00 00 00 00",
};

constexpr ItemKind contactKind = {
    .name = "Contact",
    .element = "contact",
    .item = contact,
    .fullItem = fullContact,
    .writer = writerOf<OLMMsgContactWriter>,
    .messageClass = u"IPM.Contact",
    .classSize = 0x18,
    .trailingEntries = "1F 00 00 80  06 00 00 00  02 00 00 00 00 00 00 00"
                       "1F 00 01 80  06 00 00 00  02 00 00 00 00 00 00 00",
    .trailingTags = wholeAddressIds,
};

constexpr ItemKind groupKind = {
    .name = "Group",
    .element = "group",
    .item = group,
    .fullItem = fullGroup,
    .writer = writerOf<OLMMsgContactGrpWriter>,
    .messageClass = u"IPM.DistList",
    .classSize = 0x1A,
};

void PrintTo(const ItemKind& kind, std::ostream* out) {
    *out << kind.name;
}

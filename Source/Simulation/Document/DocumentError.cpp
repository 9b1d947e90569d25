#include "Simulation/Document/DocumentError.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include "Platform/Storage/ErrnoStatus.h"
#include "Resources/DocumentTexts.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/TextTemplate.h"

DocumentError DocumentError::Content(DocumentText text, std::string subject) {
    return {B_BAD_DATA, text, std::move(subject), 0};
}

DocumentError DocumentError::Record(status_t status) {
    switch (status) {
        case B_OK:
            return {};
        case B_UNSUPPORTED:
            return {status, kTextNestedTooDeeply, {}, 0};
        case B_NO_MEMORY:
            return System(ENOMEM);
        default:
            return {status, kTextDamaged, {}, 0};
    }
}

DocumentError DocumentError::System(int error) {
    return {ErrnoStatus(error), 0, {}, error};
}

std::string DocumentError::Reason(const ProgramResources& resources) const {
    if (text == 0) return std::strerror(systemError);
    const char* const why = systemError == 0 ? "" : std::strerror(systemError);
    return FillIn(resources.InterfaceLabel(text), {subject, why});
}

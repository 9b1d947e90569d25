#include "Simulation/Document/TextTemplate.h"

#include "Platform/Support/PrintableText.h"
#include "Platform/Support/SupportDefs.h"

std::string FillIn(std::string_view text, std::initializer_list<std::string_view> values) {
    std::string filled;
    for (std::size_t i = 0; i < text.size(); i++) {
        const char mark = text[i] == '%' && i + 1 < text.size() ? text[i + 1] : '\0';
        if (mark >= '1' && mark <= '9') {
            const auto gap = static_cast<std::size_t>(mark - '1');
            if (gap < values.size()) filled += Printable(values.begin()[gap]);
            i++;
        } else {
            filled += text[i];
            if (mark == '%') i++;
        }
    }
    return filled;
}

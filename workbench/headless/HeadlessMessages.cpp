#include "workbench/headless/HeadlessMessages.h"

#include <string_view>

namespace wb {

void HeadlessMessages::dsplst(int, const char* text) {
    if (text == nullptr)
        return;
    m_messages.emplace_back(text);
    if (m_echo == nullptr)
        return;
    std::string_view line = text;
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r'))
        line.remove_suffix(1);
    std::fprintf(m_echo, "drilldown: %.*s\n", static_cast<int>(line.size()), line.data());
    std::fflush(m_echo);
}

} // namespace wb

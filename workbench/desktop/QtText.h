#pragma once
// The workbench's texts are UTF-8; Qt's are QString.

#include <QString>

#include <string>
#include <string_view>

namespace wb::desktop {

inline QString qtext(std::string_view text) {
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

} // namespace wb::desktop

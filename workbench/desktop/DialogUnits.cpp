#include "workbench/desktop/DialogUnits.h"

#include <QFontMetrics>

#include <cmath>

namespace wb::desktop {

DialogUnits::DialogUnits(const QFont& font) {
    const QFontMetrics metrics(font);
    const int alphabet = metrics.horizontalAdvance(
        QStringLiteral("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"));
    m_charWidth = static_cast<int>(std::lround(alphabet / 52.0));
    m_charHeight = metrics.height();
}

} // namespace wb::desktop

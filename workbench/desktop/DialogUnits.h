#pragma once
// Dialog units turned into pixels, as the dialog templates are measured: a horizontal unit is
// a quarter of the font's average character width, a vertical unit an eighth of its height.
// The average width is that of "a…zA…Z" divided by 52 and rounded, as the templates' own
// host measures it (not QFontMetrics::averageCharWidth, which differs).

#include <QFont>
#include <QRect>

#include "drilldown/resources/Dialogs.h"

namespace wb::desktop {

class DialogUnits {
public:
    explicit DialogUnits(const QFont& font);

    int x(int units) const { return units * m_charWidth / 4; }
    int y(int units) const { return units * m_charHeight / 8; }
    QRect rect(const DialogRect& rect) const {
        return QRect(x(rect.X), y(rect.Y), x(rect.Width), y(rect.Height));
    }

private:
    int m_charWidth;
    int m_charHeight;
};

} // namespace wb::desktop

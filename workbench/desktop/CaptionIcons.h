#pragma once
// The icons that the module's button captions ask for ("!372&Bas", "eTables de fréquence"),
// drawn small and plain by the workbench: the host's own icon set is not ours to copy, so
// each code gets a picture of what its button does (bars for histograms, a pie for pie
// charts, arrows for the drill steps, ...). A code without a picture gives no icon.

#include <QIcon>

#include "drilldown/resources/Caption.h"

class QStyle;

namespace wb::desktop {

QIcon captionIcon(const CaptionParts& caption, const QStyle& style);

} // namespace wb::desktop

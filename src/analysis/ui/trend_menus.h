#pragma once

#include <QList>
#include <QString>

class QMenuBar;

// Which of the three analysis windows: both zones, the front zone or the back zone.
enum class TrendMember { BothZones, FrontZone, BackZone };

// The analysis menus of a trend window, built from the menu table: each menu and item carries
// its given name as objectName (families as "mnuFljp(0)"). Every item is built disabled; the
// trend window enables those for which a view is registered (analysis_views.h).
namespace trend_menus {

struct Name {
    QString given;
    QString caption;
};

// Builds the member's menus into `bar`; returns the names built, in order.
QList<Name> build(QMenuBar* bar, TrendMember member);

}  // namespace trend_menus

#pragma once

#include <QLocale>

class QCoreApplication;

// Qt's own dialogs and buttons (the file dialog, the buttons of a message box, the print
// preview) speak the program's language, Chinese, whatever the desktop's locale is.
namespace qt_translations {

inline const QLocale kLocale{QLocale::Chinese, QLocale::China};

// Loads Qt's zh_CN catalogue of qtbase from Qt's translations folder into a translator owned
// by `app` and installs it. False when the catalogue is missing: the dialogs then stay English.
bool install(QCoreApplication& app);

}  // namespace qt_translations

#include "app/ui/qt_translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

bool qt_translations::install(QCoreApplication& app) {
    auto* translator = new QTranslator(&app);
    const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    if (translator->load(kLocale, QStringLiteral("qtbase"), QStringLiteral("_"), folder) &&
        QCoreApplication::installTranslator(translator))
        return true;
    delete translator;
    return false;
}

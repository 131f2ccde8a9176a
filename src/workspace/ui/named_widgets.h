#pragma once

#include <QPushButton>
#include <QString>

#include <utility>

// A widget made with its object name: the name the tests find it by and the names document
// lists.
template <typename Widget, typename... Args>
Widget* named(const QString& objectName, Args&&... args) {
    auto* w = new Widget(std::forward<Args>(args)...);
    w->setObjectName(objectName);
    return w;
}

inline QPushButton* namedButton(const QString& objectName, const QString& caption, QWidget* parent) {
    return named<QPushButton>(objectName, caption, parent);
}

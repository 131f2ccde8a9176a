#pragma once

#include "filter/filter_source.h"
#include "generation/wheels/wheel_catalogue.h"

class FilterWindow;
class SixFilterWindow;
class Prompter;
class QWidget;
class Session;

// The wheel a wheel menu entry chose for GAganRote.
struct WheelChoice {
    wheels::Family family;
    QString table;
};

// Opens a filter window of an instance: GAgan and Gdanagan expand the board into a fresh
// table, GAganRote puts the board through `wheel`, the others load their table from
// filnum.db. Null when the expansion was refused or cancelled; the window is shown and owned
// by the caller.
FilterWindow* openFilterWindow(FilterSource instance, Session& session, Prompter& prompter, QWidget* parent,
                               const WheelChoice* wheel = nullptr);

// The six-number window of GAganf, Gdanaganf (expanding the board into a fresh zuhef) or
// GAganfMb (zuhef as it was left).
SixFilterWindow* openSixFilterWindow(FilterSource instance, Session& session, Prompter& prompter, QWidget* parent);

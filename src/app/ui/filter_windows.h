#pragma once

#include "filter/filter_source.h"

class FilterWindow;
class Prompter;
class QWidget;
class Session;

// Opens a filter window of an instance: GAgan and Gdanagan expand the board into a fresh
// table, the others load their table from filnum.db. Null when the expansion was refused or
// cancelled; the window is shown and owned by the caller.
FilterWindow* openFilterWindow(FilterSource instance, Session& session, Prompter& prompter, QWidget* parent);

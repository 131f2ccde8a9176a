#include "picking/ui/picking_dialogs.h"

#include "picking/ui/frequency_scope_dialog.h"
#include "picking/ui/picking_commands.h"
#include "picking/ui/saved_selections_dialog.h"
#include "picking/ui/selection_template_window.h"

frequency_picks::Scope QtPickingDialogs::askScope(const DrawHistory& history) {
    FrequencyScopeDialog dialog(history, m_parent);
    dialog.exec();
    return dialog.scope();
}

int QtPickingDialogs::chooseSavedSelection(SavedSelections& saved, Prompter& prompter) {
    SavedSelectionsDialog dialog(saved, prompter, m_parent);
    dialog.exec();
    return dialog.chosenRow();
}

void QtPickingDialogs::openTemplates(PickingCommands& commands) {
    std::unique_ptr<SelectionTemplateWindow> window = SelectionTemplateWindow::open(commands, m_parent);
    if (window) window->exec();
}

#pragma once

#include "workspace/schema.h"

#include <functional>

class Prompter;
class QWidget;
class Session;

// What the main window opens from its menus:
//   meuPlc                                            openPrizeRules
//   mnuzhInq, mnuRtInq, mnuTxInq, mnuMbInq, mnufsInq  openPrizeCheck (zuhe, zuheRote, zuheRead,
//                                                     zuheMoban, zuhef), enabled by
//                                                     prizeCheckEnabled
//   meuRepot                                          openReports

// frmPrize, without modality; it deletes itself when closed.
void openPrizeRules(Session& session, Prompter& prompter, QWidget* parent);

// GAganDj or GAganfDj on the table, modal. The table is read from filnum.db behind a progress
// dialog. `closedToMain` runs when the window closes (the main window shows itself again).
void openPrizeCheck(Session& session, Prompter& prompter, schema::CandidateKind kind, QWidget* parent,
                    const std::function<void()>& closedToMain = {});

// Whether the check menu entry of this table is enabled: the table exists in filnum.db.
bool prizeCheckEnabled(Session& session, schema::CandidateKind kind);

// frmYk, modal.
void openReports(Session& session, Prompter& prompter, QWidget* parent);

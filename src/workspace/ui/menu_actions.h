#pragma once

#include <map>

class QAction;
class QMenu;

// The main window's menus and items, by what they do. Each carries its given name as
// objectName; the menu table (app/ui/main_menu.cpp) pairs every member with that name.
struct MenuActions {
    // An indexed family of items, such as the 5..16 numbers of meuDanxuan(i): index -> item.
    using Family = std::map<int, QAction*>;

    // 选号管理
    QAction* recallPicks = nullptr;              // mnuCall
    QAction* savePicks = nullptr;                // mnuSave
    QAction* addRecalledPicks = nullptr;         // mnuCallAdd
    QAction* frontFrequentPicks = nullptr;       // mnuHihg
    QAction* frontRarePicks = nullptr;           // mnuLow
    QAction* frontLongOmissionPicks = nullptr;   // mnuYHigh
    QAction* frontShortOmissionPicks = nullptr;  // mnuYLow
    QAction* backFrequentPicks = nullptr;        // mnuHihgHou
    QAction* backRarePicks = nullptr;            // mnuLowHou
    QAction* backLongOmissionPicks = nullptr;    // mnuYHighHou
    QAction* backShortOmissionPicks = nullptr;   // mnuYLowHou
    QAction* pickingTemplates = nullptr;         // mnusltmoban

    // 摇奖控制
    QAction* spinStart = nullptr;  // meuSta
    QAction* spinPause = nullptr;  // meuSup
    QAction* spinReset = nullptr;  // meuRst
    Family stability;              // meuSpd1..meuSpd12
    QAction* quit = nullptr;       // meuExt

    // 历史管理
    QAction* downloadHistoryText = nullptr;  // mnuNew
    QAction* updateHistoryOnline = nullptr;  // mnuNewol
    QAction* typeNewestDraw = nullptr;       // mnuLsApp
    QAction* importWholeHistory = nullptr;   // mnuRed
    QAction* importNewDraws = nullptr;       // mnuRead
    QAction* editHistoryText = nullptr;      // mnuEdit
    QAction* deleteLastDraw = nullptr;       // mnuDelast
    QAction* clearHistory = nullptr;         // meuCln

    // 功能窗口
    QMenu* windowsMenu = nullptr;                  // meuWid
    QAction* analyseBothZones = nullptr;           // mnuSy
    QAction* analyseFrontZone = nullptr;           // mnuSyQian
    QAction* analyseBackZone = nullptr;            // mnuSyHou
    QAction* profitLossReport = nullptr;           // meuRepot
    QAction* backtest = nullptr;                   // mnuBacktest
    QAction* spinArrangement = nullptr;            // meuAgarr
    QAction* checkCombinations = nullptr;          // mnuzhInq
    QAction* checkWheel = nullptr;                 // mnuRtInq
    QAction* checkTextTickets = nullptr;           // mnuTxInq
    QAction* checkTemplateTickets = nullptr;       // mnuMbInq
    QAction* checkSixFrontTickets = nullptr;       // mnufsInq
    QAction* recallExpansion = nullptr;            // mnuCallfd
    QAction* recallWheel = nullptr;                // mnuCallRote
    QAction* recallSixFrontExpansion = nullptr;    // mnuCallfd6
    QAction* recallCombinationTemplate = nullptr;  // mnuCallZhmb
    QAction* readTicketText = nullptr;             // mnuRdtxt
    QAction* recallTicketText = nullptr;           // mnuCatxt

    // 组号方式
    QMenu* playModesMenu = nullptr;              // mnuSl
    QMenu* frontMultiMenu = nullptr;             // meuAgn
    QAction* multiSpinSettings = nullptr;        // mnuMilt
    Family frontMulti;                           // meuDanxuan(5..16)
    QMenu* frontBankerMenu = nullptr;            // mnuDantuo
    Family frontBanker;                          // mnuDtuo(1..16)
    QMenu* backMultiMenu = nullptr;              // meuAgnHou
    Family backMulti;                            // meuDanxuanHou(2..8)
    QMenu* backBankerMenu = nullptr;             // mnuDantuoHou
    Family backBanker;                           // mnuDtuoHou(1..8)
    QMenu* basicWheelMenu = nullptr;             // mnuRt
    Family basicWheel;                           // meuRt(9..22)
    QMenu* superWheelMenu = nullptr;             // mnuQnjz
    Family superWheel;                           // mnuRt22..mnuRt54, by the guarantee's two digits
    QMenu* bankerWheelMenu = nullptr;            // mnuDtxj
    Family bankerWheel;                          // mnuZb(3..5)
    QMenu* sixFrontWheelMenu = nullptr;          // mnuFuxj
    Family sixFrontWheel;                        // F6RT44..F6RT76, by the guarantee's two digits
    QAction* multiExpansion = nullptr;           // mnuLst
    QAction* bankerExpansion = nullptr;          // mnuDtlst
    QAction* sixFrontMultiExpansion = nullptr;   // mnu8Lst
    QAction* sixFrontBankerExpansion = nullptr;  // mnuDt8lst

    // 用户设置
    QAction* renameWorkspace = nullptr;  // mnuName
    Family frontRule;                    // meuS(28..36)
    Family backRule;                     // meuSHou(12..24)
    QAction* prizeRules = nullptr;       // meuPlc
    QAction* printSetting = nullptr;     // mnuPtset

    // 附赠工具, 帮助
    QAction* fortune = nullptr;       // mnuYsfx
    QAction* helpDocument = nullptr;  // meuHelp
    QAction* instructions = nullptr;  // meuDtl
    QAction* about = nullptr;         // meuAbt
};

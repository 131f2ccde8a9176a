#pragma once

#include "workspace/shared_state.h"

#include <QAbstractTableModel>

// MSFlexGrid1: one row per draw with its row number, issue, five front and two back numbers.
// The header row carries "序数", "期号", "前1位" .. "前5位", "后1位", "后2位".
class HistoryGridModel : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit HistoryGridModel(const DrawHistory& history, QObject* parent = nullptr);

    // Call after the history changed.
    void refresh();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    static const QStringList& headers();

private:
    const DrawHistory& m_history;
};

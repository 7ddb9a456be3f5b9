#pragma once

#include "window/SettingsContext.h"

#include <QAbstractTableModel>

#include <functional>
#include <string>
#include <vector>

namespace orvane {

/// The counters as rows in the order of their names: name, last value (to be edited), what comes next, and the presets that use it.
/// Rows come, go and change one by one, so that an open field stays open while the helper counts on.
class CounterTableModel final : public QAbstractTableModel, private CounterListObserver {
public:
    enum Column { Name, Value, Next, Users, ColumnCount };

    CounterTableModel(SettingsContext &context, QObject *parent);
    ~CounterTableModel() override;

    /// Told when a text was not stored, because the preferences cannot hold it.
    std::function<void(const QString &name, const QString &text)> refused;

    [[nodiscard]] const std::string &nameAt(int row) const { return _names[static_cast<std::size_t>(row)]; }
    /// Whether the preferences can hold the text.
    [[nodiscard]] bool accepts(const QString &text) const;
    /// Looks again which presets use which counter.
    void refreshUsers();

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;

private:
    void countersDidChange() override;
    [[nodiscard]] std::vector<std::string> _namesInOrder() const;
    void _takeOver(const std::vector<std::string> &names);
    [[nodiscard]] QString _text(int row, int column) const;
    [[nodiscard]] QString _usersOf(const std::string &name) const;

    SettingsContext &_context;
    std::vector<std::string> _names;
    std::vector<Variable> _variables; ///< of all presets, as of the last look
};

} // namespace orvane

#pragma once

#include "devices/ModelRow.h"
#include "support/LaunchOptions.h"

#include <QVector>

/// The models that the program knows, in the order in which they are looked up. The ids stand in
/// ModelIds.inc, where the maker fills them in.
class ModelTable
{
public:
    /// The built-in table of 100 rows.
    ModelTable();
    /// A table of a test's own.
    explicit ModelTable(QVector<ModelRow> rows);

    const QVector<ModelRow> &rows() const { return m_rows; }

    /// The first row with these ids that the launch mode accepts; null when there is none. The row
    /// lives as long as the table.
    const ModelRow *find(quint32 vendorId, quint32 productId, const LaunchOptions &options) const;

private:
    QVector<ModelRow> m_rows;
};

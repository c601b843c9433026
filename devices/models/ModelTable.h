#pragma once

#include "devices/models/ModelRow.h"
#include "support/process/LaunchOptions.h"

#include <QVector>

/// The models that the program knows, in the order in which they are looked up. The maker fills in their ids
/// in ModelIds.inc.
class ModelTable
{
public:
    /// Creates the built-in table of 100 rows.
    ModelTable();
    /// Creates a table for a test.
    explicit ModelTable(QVector<ModelRow> rows);

    const QVector<ModelRow> &rows() const { return m_rows; }

    /// Returns the first row with these ids that the launch mode accepts, or null. The row is valid as long
    /// as the table exists.
    const ModelRow *find(quint32 vendorId, quint32 productId, const LaunchOptions &options) const;

private:
    QVector<ModelRow> m_rows;
};

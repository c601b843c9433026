#include "app/window/MainWindowPage.h"

#include "app/window/MainWindowTexts.h"
#include "app/window/NamedObjects.h"
#include "widgets/CustomComboBox.h"
#include "widgets/WidgetTab1.h"

#include <QCheckBox>
#include <QDebug>
#include <QEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>

using MainWindowTexts::translated;
using NamedObjects::makeLayout;
using NamedObjects::named;

namespace {

const char *const partitionNames[MainWindowWidgets::partitionCount] = {"spl", "env", "os", "rodata", "data"};

QHBoxLayout *buildConnectRow(const MainWindowWidgets &widgets)
{
    auto *row = makeLayout<QHBoxLayout>("connectRow");
    row->setAlignment(Qt::AlignTop);
    row->setContentsMargins(15, 15, 0, 0);
    row->setSpacing(0);
    row->addWidget(widgets.connectTypeLabel);
    row->addWidget(widgets.writeTypeBox);
    return row;
}

QHBoxLayout *buildDividerRow(MainWindowWidgets &widgets)
{
    widgets.divider = named(new QFrame, "divider");
    widgets.divider->setStyleSheet(QStringLiteral("color: rgb(179,179,179);"));
    widgets.divider->setFixedHeight(256);
    widgets.divider->setFrameShape(QFrame::VLine);
    widgets.divider->setFrameShadow(QFrame::Plain);
    widgets.divider->setLineWidth(1);
    auto *row = makeLayout<QHBoxLayout>("dividerRow");
    row->setAlignment(Qt::AlignTop);
    row->setContentsMargins(70, 50, 0, 0);
    row->addWidget(widgets.divider);
    return row;
}

QHBoxLayout *buildNoticeRow(MainWindowWidgets &widgets)
{
    widgets.noticeLabel = named(new QLabel(translated(MainWindowTexts::notice)), "noticeLabel");
    widgets.noticeLabel->setFixedSize(280, 100);
    auto *row = makeLayout<QHBoxLayout>("noticeRow");
    row->setAlignment(Qt::AlignCenter);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(widgets.noticeLabel);
    widgets.noticeRow = row;
    return row;
}

QHBoxLayout *buildSeparatorRow(MainWindowWidgets &widgets)
{
    widgets.partitionSeparator = named(new QFrame, "partitionSeparator");
    widgets.partitionSeparator->setFrameShape(QFrame::HLine);
    widgets.partitionSeparator->setFrameShadow(QFrame::Sunken);
    widgets.partitionSeparator->setFixedWidth(160);
    auto *row = makeLayout<QHBoxLayout>("separatorRow");
    row->setAlignment(Qt::AlignRight);
    row->setSpacing(0);
    row->setContentsMargins(0, 0, 20, 0);
    row->addStretch();
    row->addWidget(widgets.partitionSeparator);
    return row;
}

QHBoxLayout *buildPartitionRow(int index, MainWindowWidgets &widgets)
{
    const QLatin1String name(partitionNames[index]);
    auto *box = new QCheckBox(name);
    box->setObjectName(QLatin1String("partitionBox_") + name);
    box->setContentsMargins(0, 0, 0, 0);
    box->setChecked(true);
    box->hide();
    box->setEnabled(false);
    widgets.partitionBoxes.at(index) = box;
    auto *row = new QHBoxLayout;
    row->setObjectName(QLatin1String("partitionRow_") + name);
    row->setAlignment(Qt::AlignTop);
    row->setContentsMargins(170, 5, 0, 0);
    row->addWidget(box);
    return row;
}

QVBoxLayout *buildPartitionColumn(MainWindowWidgets &widgets)
{
    widgets.partitionSelectBox =
        named(new QCheckBox(translated(MainWindowTexts::selectPartition)), "partitionSelectBox");
    widgets.partitionSelectBox->setContentsMargins(0, 0, 0, 0);
    auto *selectRow = makeLayout<QHBoxLayout>("partitionSelectRow");
    selectRow->setAlignment(Qt::AlignTop);
    selectRow->setContentsMargins(170, 20, 0, 0);
    selectRow->addWidget(widgets.partitionSelectBox);

    auto *column = makeLayout<QVBoxLayout>("partitionColumn");
    column->setAlignment(Qt::AlignTop);
    column->setSpacing(0);
    column->addLayout(selectRow);
    column->addSpacing(7);
    column->addLayout(buildSeparatorRow(widgets));
    for (int index = 0; index < MainWindowWidgets::partitionCount; ++index)
        column->addLayout(buildPartitionRow(index, widgets));
    return column;
}

QHBoxLayout *buildUpperPart(MainWindowWidgets &widgets)
{
    auto *upper = makeLayout<QHBoxLayout>("upperPart");
    upper->setAlignment(Qt::AlignTop);
    upper->setSpacing(0);
    upper->setContentsMargins(0, 0, 0, 0);
    upper->addLayout(buildConnectRow(widgets));
    upper->addLayout(buildDividerRow(widgets));
    upper->addLayout(buildNoticeRow(widgets));
    upper->addLayout(buildPartitionColumn(widgets));
    return upper;
}

QHBoxLayout *buildDeviceStateRow(MainWindowWidgets &widgets)
{
    widgets.statusLabel = named(new QLabel(translated(MainWindowTexts::deviceNotDetected)), "statusLabel");
    widgets.statusLabel->setStyleSheet(QStringLiteral("color: blue;"));
    auto *row = makeLayout<QHBoxLayout>("deviceStateRow");
    row->setAlignment(Qt::AlignRight);
    row->setContentsMargins(0, 0, 15, 0);
    row->addWidget(widgets.statusLabel);
    return row;
}

/// Shortens the divider to end above the restart box where the two overlap. The English restart text is wider
/// than the space left of the divider and would leave a piece of the line visible below the box.
class DividerTrimmer : public QObject
{
public:
    explicit DividerTrimmer(const MainWindowWidgets &widgets)
        : QObject(widgets.divider),
          m_divider(widgets.divider),
          m_restartBox(widgets.restartBox)
    {
        m_divider->installEventFilter(this);
        m_restartBox->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Move || event->type() == QEvent::Resize)
            trim();
        return QObject::eventFilter(watched, event);
    }

private:
    void trim()
    {
        QRect line = m_divider->rect();
        if (m_divider->geometry().intersects(m_restartBox->geometry()))
            line.setHeight(m_restartBox->y() - m_divider->y());
        m_divider->setFrameRect(line);
    }

    QFrame *m_divider;
    QCheckBox *m_restartBox;
};

QHBoxLayout *buildOptionRow(QCheckBox *box, const char *name)
{
    auto *row = makeLayout<QHBoxLayout>(name);
    row->setAlignment(Qt::AlignLeft | Qt::AlignBottom);
    row->setSpacing(0);
    row->setContentsMargins(15, 0, 0, 15);
    row->addWidget(box);
    return row;
}

void connectPartitionSelectBox(const MainWindowWidgets &widgets)
{
    const auto boxes = widgets.partitionBoxes;
    QObject::connect(widgets.partitionSelectBox, &QCheckBox::stateChanged, widgets.partitionSelectBox,
                     [boxes](int state) {
                         const bool checked = state == Qt::Checked;
                         qDebug() << (checked ? "Checkbox is checked." : "Checkbox is unchecked.");
                         for (QCheckBox *box : boxes)
                             box->setVisible(checked);
                     });
}

} // namespace

void MainWindowPage::buildContents(QWidget *mainWidget, const MainWindowLayout::Callbacks &callbacks,
                                   MainWindowWidgets &widgets)
{
    widgets.restartBox = named(new QCheckBox(translated(MainWindowTexts::restartAfterFlash)), "restartBox");
    widgets.iapBox = named(new QCheckBox(translated(MainWindowTexts::iapSet)), "iapBox");
    auto *contents = makeLayout<QVBoxLayout>("pageLayout");
    contents->setSpacing(0);
    contents->setContentsMargins(0, 0, 0, 0);
    contents->addLayout(buildUpperPart(widgets));
    contents->addLayout(buildDeviceStateRow(widgets));
    contents->addLayout(buildOptionRow(widgets.restartBox, "restartRow"));
    contents->addLayout(buildOptionRow(widgets.iapBox, "iapRow"));
    widgets.flashingPage->setLayout(contents);

    new DividerTrimmer(widgets);
    connectPartitionSelectBox(widgets);
    QObject::connect(widgets.iapBox, &QCheckBox::stateChanged, mainWidget, callbacks.iapStateChanged);
}

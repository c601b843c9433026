#include "app/MainWindowPage.h"

#include "app/MainWindowTexts.h"
#include "devices/ControlledDeviceList.h"
#include "widgets/CustomComboBox.h"
#include "widgets/CustomTabWidget.h"
#include "widgets/WidgetTab1.h"

#include <QCheckBox>
#include <QDebug>
#include <QEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>

using MainWindowTexts::shown;

namespace {

const char *const partitionNames[MainWindowWidgets::partitionCount] = {"spl", "env", "os", "rodata", "data"};

template <typename Layout>
Layout *named(const char *name)
{
    auto *layout = new Layout;
    layout->setObjectName(QLatin1String(name));
    return layout;
}

template <typename Widget>
Widget *named(Widget *widget, const char *name)
{
    widget->setObjectName(QLatin1String(name));
    return widget;
}

QHBoxLayout *buildConnectRow(const MainWindowWidgets &widgets)
{
    auto *row = named<QHBoxLayout>("connectRow");
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
    auto *row = named<QHBoxLayout>("dividerRow");
    row->setAlignment(Qt::AlignTop);
    row->setContentsMargins(70, 50, 0, 0);
    row->addWidget(widgets.divider);
    return row;
}

QHBoxLayout *buildNoticeRow(MainWindowWidgets &widgets)
{
    widgets.noticeLabel = named(new QLabel(shown(MainWindowTexts::notice)), "noticeLabel");
    widgets.noticeLabel->setFixedSize(280, 100);
    auto *row = named<QHBoxLayout>("noticeRow");
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
    auto *row = named<QHBoxLayout>("separatorRow");
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
        named(new QCheckBox(shown(MainWindowTexts::selectPartition)), "partitionSelectBox");
    widgets.partitionSelectBox->setContentsMargins(0, 0, 0, 0);
    auto *selectRow = named<QHBoxLayout>("partitionSelectRow");
    selectRow->setAlignment(Qt::AlignTop);
    selectRow->setContentsMargins(170, 20, 0, 0);
    selectRow->addWidget(widgets.partitionSelectBox);

    auto *column = named<QVBoxLayout>("partitionColumn");
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
    auto *upper = named<QHBoxLayout>("upperPart");
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
    widgets.statusLabel = named(new QLabel(shown(MainWindowTexts::deviceNotDetected)), "statusLabel");
    widgets.statusLabel->setStyleSheet(QStringLiteral("color: blue;"));
    auto *row = named<QHBoxLayout>("deviceStateRow");
    row->setAlignment(Qt::AlignRight);
    row->setContentsMargins(0, 0, 15, 0);
    row->addWidget(widgets.statusLabel);
    return row;
}

/// The English restart text is longer than the space left of the divider. The check box lies over
/// the line there; this keeps a stump of it from showing below.
class LineAboveRestartBox : public QObject
{
public:
    explicit LineAboveRestartBox(const MainWindowWidgets &widgets)
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
    auto *row = named<QHBoxLayout>(name);
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

void MainWindowLayout::buildFlashingPage(QWidget *mainWidget, LocalFileHost *host, MainWindowWidgets &widgets)
{
    mainWidget->setFixedSize(800, 490);
    widgets.tabWidget = named(new CustomTabWidget(mainWidget), "tabWidget");
    widgets.tabWidget->tabBar()->setObjectName(QStringLiteral("tabBar"));
    widgets.tabWidget->setFixedSize(780, 385);
    widgets.tabWidget->setContentsMargins(0, 0, 0, 0);

    widgets.tabRow = named<QHBoxLayout>("tabRow");
    // Both heights must be in force here, or the margin comes out as something else.
    const int topMargin = mainWidget->height() - widgets.tabWidget->height() - 100;
    widgets.tabRow->setContentsMargins(0, topMargin, 0, 0);
    widgets.tabRow->setAlignment(Qt::AlignHCenter | Qt::AlignTop | Qt::AlignVCenter);
    widgets.tabRow->addWidget(widgets.tabWidget);

    widgets.flashingPage = named(new WidgetTab1(nullptr, host), "flashingPage");
    widgets.flashingPage->setContentsMargins(0, 0, 0, 0);
    widgets.flashingPage->setStyleSheet(QStringLiteral("background-color: white;"));
    widgets.tabWidget->addTab(widgets.flashingPage, shown(MainWindowTexts::flashImage));

    widgets.connectTypeLabel =
        named(new QLabel(shown(MainWindowTexts::connectType), mainWidget), "connectTypeLabel");
    widgets.connectTypeLabel->setFixedSize(60, 27);
}

void MainWindowLayout::buildConnectTypeBox(QWidget *mainWidget, bool usbAllowed, bool hidAllowed,
                                           MainWindowWidgets &widgets)
{
    auto *box = named(new CustomComboBox(mainWidget), "writeTypeBox");
    box->listView()->setObjectName(QStringLiteral("writeTypeList"));
    box->setFixedSize(61, 27);
    box->addItems(ControlledDeviceList::writeTypeItems({usbAllowed, hidAllowed}));
    if (box->count() > 1) {
        box->setItemHeight(52);
        box->listView()->setFixedHeight(52);
    }
    widgets.writeTypeBox = box;
}

void MainWindowPage::buildContents(QWidget *mainWidget, const MainWindowLayout::Callbacks &callbacks,
                                   MainWindowWidgets &widgets)
{
    widgets.restartBox = named(new QCheckBox(shown(MainWindowTexts::restartAfterFlash)), "restartBox");
    widgets.iapBox = named(new QCheckBox(shown(MainWindowTexts::iapSet)), "iapBox");
    auto *contents = named<QVBoxLayout>("pageLayout");
    contents->setSpacing(0);
    contents->setContentsMargins(0, 0, 0, 0);
    contents->addLayout(buildUpperPart(widgets));
    contents->addLayout(buildDeviceStateRow(widgets));
    contents->addLayout(buildOptionRow(widgets.restartBox, "restartRow"));
    contents->addLayout(buildOptionRow(widgets.iapBox, "iapRow"));
    widgets.flashingPage->setLayout(contents);

    new LineAboveRestartBox(widgets);
    connectPartitionSelectBox(widgets);
    QObject::connect(widgets.iapBox, &QCheckBox::stateChanged, mainWidget, callbacks.iapStateChanged);
}

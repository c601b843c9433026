#pragma once

#include <QComboBox>
#include <QListView>

/// A drop-down that paints itself: a white box with a grey border, the current text, and an arrow that
/// changes while the mouse is over the box or the list is open.
class CustomComboBox : public QComboBox
{
    Q_OBJECT

public:
    class CustomItemDelegate;

    explicit CustomComboBox(QWidget *parent = nullptr);

    /// The height of the whole list in pixels: 26 for each row. Setting it does not resize the list view; the
    /// owner does both.
    int itemHeight() const { return m_itemHeight; }
    void setItemHeight(int height) { m_itemHeight = height; }

    /// Returns the popup's view, which the box owns.
    QListView *listView() const { return m_listView; }

    void showPopup() override;
    void hidePopup() override;

protected:
    void enterEvent(QEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    bool m_popupVisible = false;
    int m_itemHeight = 26;
    QListView *m_listView = nullptr;
};

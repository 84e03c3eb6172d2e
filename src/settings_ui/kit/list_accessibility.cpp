#include "settings_ui/kit/list_accessibility.h"

#include "settings_ui/kit/selectable_text.h"
#include "settings_ui/kit/virtual_list.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include <algorithm>
#include <memory>

namespace corvandi::kit {
namespace {

/// The rows in their order, without those that are kept for later.
class AccessibleList : public QAccessibleWidget {
public:
    explicit AccessibleList(VirtualList& list)
        : QAccessibleWidget(&list, QAccessible::List)
        , list_(list)
    {
    }
    [[nodiscard]] int childCount() const override { return static_cast<int>(list_.rows().size()); }
    [[nodiscard]] QAccessibleInterface* child(int index) const override
    {
        const auto rows = list_.rows();
        const bool exists = index >= 0 && static_cast<std::size_t>(index) < rows.size();
        return exists ? QAccessible::queryAccessibleInterface(rows[static_cast<std::size_t>(index)])
                      : nullptr;
    }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override
    {
        const auto rows = list_.rows();
        const auto found = std::find(rows.begin(), rows.end(), child ? child->object() : nullptr);
        return found == rows.end() ? -1 : static_cast<int>(found - rows.begin());
    }

private:
    VirtualList& list_;
};

class AccessibleRow : public QAccessibleWidget {
public:
    explicit AccessibleRow(ListRow& row)
        : QAccessibleWidget(&row, QAccessible::ListItem)
        , row_(row)
    {
    }
    [[nodiscard]] QString text(QAccessible::Text text) const override
    {
        if (text == QAccessible::Name)
            return row_.spokenText();
        return text == QAccessible::Description ? row_.spokenPosition() : QAccessibleWidget::text(text);
    }

private:
    ListRow& row_;
};

class AccessibleText : public QAccessibleWidget {
public:
    explicit AccessibleText(SelectableText& text)
        : QAccessibleWidget(&text, QAccessible::StaticText)
        , text_(text)
    {
    }
    [[nodiscard]] QString text(QAccessible::Text text) const override
    {
        return text == QAccessible::Name ? text_.text() : QAccessibleWidget::text(text);
    }

private:
    SelectableText& text_;
};

/// Qt owns what it returns.
QAccessibleInterface* interfaceOf(const QString&, QObject* object)
{
    if (auto* list = qobject_cast<VirtualList*>(object))
        return std::make_unique<AccessibleList>(*list).release();
    if (auto* row = qobject_cast<ListRow*>(object))
        return std::make_unique<AccessibleRow>(*row).release();
    if (auto* text = qobject_cast<SelectableText*>(object))
        return std::make_unique<AccessibleText>(*text).release();
    return nullptr;
}

} // namespace

void makeListsAccessible()
{
    QAccessible::installFactory(interfaceOf);
}

} // namespace corvandi::kit

#include "ui/frame/spokenrole.h"

#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QVariant>

#include <algorithm>

namespace velometer {

namespace {

constexpr auto roleProperty = "spokenRole";
constexpr auto selectedProperty = "spokenSelected";
constexpr auto expandedProperty = "spokenExpanded";

class Spoken : public QAccessibleWidget
{
public:
    using QAccessibleWidget::QAccessibleWidget;

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.focusable = role() != QAccessible::List;
        const QVariant selected = object()->property(selectedProperty);
        state.selectable = selected.isValid();
        state.selected = selected.toBool();
        const QVariant expanded = object()->property(expandedProperty);
        state.expandable = expanded.isValid();
        state.expanded = expanded.toBool();
        state.collapsed = expanded.isValid() && !expanded.toBool();
        return state;
    }

    int childCount() const override { return static_cast<int>(rows().size()); }

    QAccessibleInterface *child(int index) const override
    {
        return QAccessible::queryAccessibleInterface(rows().value(index));
    }

    int indexOfChild(const QAccessibleInterface *child) const override
    {
        return static_cast<int>(rows().indexOf(child->object()));
    }

    QStringList actionNames() const override
    {
        return QStringList(pressAction()) + QAccessibleWidget::actionNames();
    }

    void doAction(const QString &name) override
    {
        if (name != pressAction()) {
            QAccessibleWidget::doAction(name);
            return;
        }
        widget()->setFocus();
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QCoreApplication::postEvent(object(),
                                        new QKeyEvent(type, Qt::Key_Return, Qt::NoModifier));
        }
    }

private:
    /// Of a list, as they stand, in whatever order they were made. What is within anything else is
    /// said by its name.
    QObjectList rows() const
    {
        QObjectList found;
        if (role() != QAccessible::List) {
            return found;
        }
        for (QObject *each : object()->children()) {
            if (const auto *row = qobject_cast<QWidget *>(each); row && row->isVisible()) {
                found.append(each);
            }
        }
        const auto topOf = [](QObject *each) { return qobject_cast<QWidget *>(each)->y(); };
        std::sort(found.begin(), found.end(),
                  [&](QObject *one, QObject *other) { return topOf(one) < topOf(other); });
        return found;
    }
};

QAccessibleInterface *spoken(const QString & /*className*/, QObject *object)
{
    auto *widget = qobject_cast<QWidget *>(object);
    const QVariant role = widget ? widget->property(roleProperty) : QVariant();
    return role.isValid() ? new Spoken(widget, static_cast<QAccessible::Role>(role.toInt()))
                          : nullptr;
}

} // namespace

void SpokenRole::give(QWidget *widget, QAccessible::Role role)
{
    [[maybe_unused]] static const bool installed = [] {
        QAccessible::installFactory(spoken);
        return true;
    }();
    // A form's texts may have brought the toolkit to its own opinion.
    if (auto *face = QAccessible::queryAccessibleInterface(widget)) {
        QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(face));
    }
    widget->setProperty(roleProperty, static_cast<int>(role));
}

void SpokenRole::setState(QWidget *widget, const State &state)
{
    const auto changed = [widget](const char *property, const std::optional<bool> &value) {
        const QVariant before = widget->property(property);
        const QVariant now = value ? QVariant(*value) : QVariant();
        widget->setProperty(property, now);
        return before != now;
    };
    QAccessible::State said;
    said.selected = changed(selectedProperty, state.selected);
    said.expanded = changed(expandedProperty, state.expanded);
    if (said.selected || said.expanded) {
        QAccessibleStateChangeEvent event(widget, said);
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace velometer

// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "valueeditor.h"

#include "propertybounds.h"
#include "samples.h"

#include <QtCore/QEvent>
#include <QtCore/QSignalBlocker>
#include <QtGui/QKeySequence>
#include <QtGui/QPainter>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QColorDialog>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDoubleSpinBox>
#include <QtWidgets/QFontComboBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QKeySequenceEdit>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QSpinBox>
#include <QtWidgets/QToolButton>

#include <limits>

namespace {

constexpr int longestText = 200;
constexpr int swatchSide = 16;
constexpr int imageSide = 20;
constexpr int mostDecimals = 3;
constexpr int smallestFont = 4;
constexpr int largestFont = 96;

QHBoxLayout *rowOf(QWidget *editor)
{
    auto *layout = new QHBoxLayout(editor);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    return layout;
}

/// Keeps the longest entry of @p box from deciding how wide the list of editors is.
void keepNarrow(QComboBox *box)
{
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(8);
}

bool isSame(const QVariant &a, const QVariant &b)
{
    if (a.userType() != b.userType())
        return false;
    switch (a.userType()) {
    case QMetaType::QPixmap:
        return a.value<QPixmap>().cacheKey() == b.value<QPixmap>().cacheKey();
    case QMetaType::QIcon:
        return a.value<QIcon>().cacheKey() == b.value<QIcon>().cacheKey();
    default:
        return a == b;
    }
}

class BoolEditor : public ValueEditor
{
public:
    BoolEditor()
    {
        rowOf(this)->addWidget(box);
        guard(box);
        connect(box, &QCheckBox::toggled, this, [this](bool on) { take(on); });
    }

protected:
    void showValue(const QVariant &value) override
    {
        const QSignalBlocker blocker(box);
        box->setChecked(value.toBool());
    }

private:
    QCheckBox *box = new QCheckBox(this);
};

class IntEditor : public ValueEditor
{
public:
    explicit IntEditor(const PropertyBounds &bounds)
    {
        box->setRange(int(bounds.least), int(bounds.most));
        box->setSingleStep(qMax(1, int(bounds.step)));
        box->setKeyboardTracking(false);
        rowOf(this)->addWidget(box);
        guard(box);
        connect(box, qOverload<int>(&QSpinBox::valueChanged), this,
                [this](int number) { take(number); });
    }

protected:
    void showValue(const QVariant &value) override
    {
        const QSignalBlocker blocker(box);
        box->setValue(value.toInt());
    }

private:
    QSpinBox *box = new QSpinBox(this);
};

/// Writes no zeros after the last decimal that counts.
class NumberBox : public QDoubleSpinBox
{
public:
    using QDoubleSpinBox::QDoubleSpinBox;
    QString textFromValue(double value) const override
    {
        QLocale plain = locale();
        plain.setNumberOptions(QLocale::OmitGroupSeparator);
        return plain.toString(value, 'f', QLocale::FloatingPointShortest);
    }
};

class DoubleEditor : public ValueEditor
{
public:
    explicit DoubleEditor(const PropertyBounds &bounds)
    {
        box->setDecimals(mostDecimals);
        box->setRange(bounds.least, bounds.most);
        box->setSingleStep(bounds.step);
        box->setKeyboardTracking(false);
        rowOf(this)->addWidget(box);
        guard(box);
        connect(box, qOverload<double>(&QDoubleSpinBox::valueChanged), this,
                [this](double number) { take(number); });
    }

protected:
    void showValue(const QVariant &value) override
    {
        const QSignalBlocker blocker(box);
        box->setValue(value.toDouble());
    }

private:
    NumberBox *box = new NumberBox(this);
};

class TextEditor : public ValueEditor
{
public:
    TextEditor()
    {
        line->setMaxLength(longestText);
        rowOf(this)->addWidget(line);
        connect(line, &QLineEdit::textEdited, this, [this](const QString &text) { take(text); });
    }

protected:
    void showValue(const QVariant &value) override
    {
        // Setting an equal text would move the cursor.
        if (line->text() != value.toString())
            line->setText(value.toString());
    }

private:
    QLineEdit *line = new QLineEdit(this);
};

/// A colour by its name or number, or chosen in a dialog; no text stands for an invalid colour.
class ColorEditor : public ValueEditor
{
public:
    ColorEditor()
    {
        QHBoxLayout *layout = rowOf(this);
        layout->addWidget(swatch);
        layout->addWidget(line, 1);
        line->setPlaceholderText(tr("no colour"));
        swatch->setAutoRaise(true);
        swatch->setIconSize(QSize(swatchSide, swatchSide));
        swatch->setToolTip(tr("Choose a colour"));
        connect(line, &QLineEdit::editingFinished, this, [this] { readLine(); });
        connect(swatch, &QToolButton::clicked, this, [this] { openDialog(); });
    }

protected:
    void showValue(const QVariant &value) override
    {
        const auto color = value.value<QColor>();
        line->setText(nameOf(color));
        QPixmap pixmap(swatchSide, swatchSide);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setPen(palette().color(QPalette::Mid));
        if (color.isValid()) {
            painter.fillRect(pixmap.rect(), QBrush(Qt::lightGray, Qt::Dense4Pattern));
            painter.setBrush(color);
        }
        painter.drawRect(0, 0, swatchSide - 1, swatchSide - 1);
        painter.end();
        swatch->setIcon(pixmap);
    }

private:
    static QString nameOf(const QColor &color)
    {
        if (!color.isValid())
            return {};
        return color.name(color.alpha() == 255 ? QColor::HexRgb : QColor::HexArgb);
    }

    void readLine()
    {
        const QString text = line->text().trimmed();
        if (text == nameOf(value().value<QColor>()))
            return;
        if (text.isEmpty())
            choose(QColor());
        else if (QColor::isValidColor(text))
            choose(QColor(text));
        else
            showValue(value());
    }

    void choose(const QColor &color)
    {
        showValue(color);
        take(color);
    }

    void openDialog()
    {
        auto *dialog = new QColorDialog(value().value<QColor>(), window());
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->setOptions(QColorDialog::ShowAlphaChannel | QColorDialog::DontUseNativeDialog);
        // The editor may go while the dialog is open.
        connect(this, &QObject::destroyed, dialog, &QWidget::close);
        connect(dialog, &QColorDialog::colorSelected, this,
                [this](const QColor &color) { choose(color); });
        dialog->open();
    }

    QToolButton *swatch = new QToolButton(this);
    QLineEdit *line = new QLineEdit(this);
};

class FontEditor : public ValueEditor
{
public:
    FontEditor()
    {
        auto *column = new QVBoxLayout(this);
        column->setContentsMargins(0, 0, 0, 0);
        column->setSpacing(4);
        column->addWidget(family);
        auto *second = new QHBoxLayout;
        column->addLayout(second);
        second->addWidget(size, 1);
        second->addWidget(bold);
        second->addWidget(italic);
        family->setEditable(false);
        keepNarrow(family);
        size->setRange(smallestFont, largestFont);
        size->setSuffix(tr(" pt"));
        size->setKeyboardTracking(false);
        prepareToggle(bold, tr("B"), tr("Bold"));
        prepareToggle(italic, tr("I"), tr("Italic"));
        guard(family);
        guard(size);
        connect(family, qOverload<int>(&QComboBox::activated), this, [this] {
            change([this](QFont *font) { font->setFamily(family->currentFont().family()); });
        });
        connect(size, qOverload<int>(&QSpinBox::valueChanged), this, [this](int points) {
            change([points](QFont *font) { font->setPointSize(points); });
        });
        connect(bold, &QToolButton::clicked, this,
                [this](bool on) { change([on](QFont *font) { font->setBold(on); }); });
        connect(italic, &QToolButton::clicked, this,
                [this](bool on) { change([on](QFont *font) { font->setItalic(on); }); });
    }

protected:
    void showValue(const QVariant &value) override
    {
        const auto font = value.value<QFont>();
        const QSignalBlocker familyBlocker(family);
        const QSignalBlocker sizeBlocker(size);
        family->setCurrentFont(font);
        size->setValue(QFontInfo(font).pointSize());
        bold->setChecked(font.bold());
        italic->setChecked(font.italic());
    }

private:
    static void prepareToggle(QToolButton *button, const QString &text, const QString &toolTip)
    {
        button->setText(text);
        button->setToolTip(toolTip);
        button->setCheckable(true);
    }

    template <typename Change>
    void change(Change &&change)
    {
        auto font = value().value<QFont>();
        change(&font);
        take(font);
    }

    QFontComboBox *family = new QFontComboBox(this);
    QSpinBox *size = new QSpinBox(this);
    QToolButton *bold = new QToolButton(this);
    QToolButton *italic = new QToolButton(this);
};

class KeyEditor : public ValueEditor
{
public:
    KeyEditor()
    {
        rowOf(this)->addWidget(keys);
        connect(keys, &QKeySequenceEdit::keySequenceChanged, this,
                [this](const QKeySequence &sequence) { take(sequence); });
    }

protected:
    void showValue(const QVariant &value) override
    {
        const QSignalBlocker blocker(keys);
        keys->setKeySequence(value.value<QKeySequence>());
    }

private:
    QKeySequenceEdit *keys = new QKeySequenceEdit(this);
};

/// A value of several whole numbers.
template <typename Value, int count>
class NumbersEditor : public ValueEditor
{
public:
    NumbersEditor(const PropertyBounds &bounds, Value (*newJoin)(const int *),
                  void (*newSplit)(const Value &, int *))
        : join(newJoin)
        , split(newSplit)
    {
        QHBoxLayout *layout = rowOf(this);
        for (QSpinBox *&box : boxes) {
            box = new QSpinBox(this);
            box->setRange(int(bounds.least), int(bounds.most));
            box->setSingleStep(qMax(1, int(bounds.step)));
            box->setKeyboardTracking(false);
            // Else the largest number that fits sets the width.
            box->setMinimumWidth(48);
            layout->addWidget(box, 1);
            guard(box);
            connect(box, qOverload<int>(&QSpinBox::valueChanged), this, [this] { read(); });
        }
    }

protected:
    void showValue(const QVariant &value) override
    {
        int numbers[count];
        split(value.value<Value>(), numbers);
        for (int i = 0; i < count; ++i) {
            const QSignalBlocker blocker(boxes[i]);
            boxes[i]->setValue(numbers[i]);
        }
    }

private:
    void read()
    {
        int numbers[count];
        for (int i = 0; i < count; ++i)
            numbers[i] = boxes[i]->value();
        take(QVariant::fromValue(join(numbers)));
    }

    Value (*join)(const int *);
    void (*split)(const Value &, int *);
    QSpinBox *boxes[count];
};

class EnumEditor : public ValueEditor
{
public:
    EnumEditor()
    {
        keepNarrow(box);
        rowOf(this)->addWidget(box);
        guard(box);
        connect(box, qOverload<int>(&QComboBox::activated), this,
                [this](int index) { take(box->itemData(index).toInt()); });
    }

    void add(const QString &name, int number)
    {
        box->addItem(name, number);
    }

protected:
    void showValue(const QVariant &value) override
    {
        box->setCurrentIndex(box->findData(numberOf(value)));
    }

private:
    QComboBox *box = new QComboBox(this);
};

/// Flags in a menu that stays readable: combinations and second names are left out.
class FlagsEditor : public ValueEditor
{
public:
    explicit FlagsEditor(const QMetaEnum &type)
    {
        button->setPopupMode(QToolButton::InstantPopup);
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        auto *menu = new QMenu(button);
        button->setMenu(menu);
        for (int i = 0; i < type.keyCount(); ++i) {
            const int flag = type.value(i);
            if (flag == 0 || (flag & (flag - 1)) != 0 || actionOf(flag))
                continue;
            QAction *action = menu->addAction(QString::fromLatin1(type.key(i)));
            action->setCheckable(true);
            action->setData(flag);
            connect(action, &QAction::triggered, this, [this, flag](bool on) {
                const int number = numberOf(value());
                const int changed = on ? number | flag : number & ~flag;
                showValue(changed);
                take(changed);
            });
        }
        rowOf(this)->addWidget(button);
    }

protected:
    void showValue(const QVariant &value) override
    {
        const int number = numberOf(value);
        QStringList names;
        const QList<QAction *> actions = button->menu()->actions();
        for (QAction *action : actions) {
            action->setChecked(number & action->data().toInt());
            if (action->isChecked())
                names.append(action->text());
        }
        const QString text = names.isEmpty() ? tr("none") : names.join(QStringLiteral(", "));
        button->setToolTip(text);
        button->setText(fontMetrics().elidedText(text, Qt::ElideRight, 130));
    }

private:
    QAction *actionOf(int flag) const
    {
        const QList<QAction *> actions = button->menu()->actions();
        for (QAction *action : actions) {
            if (action->data().toInt() == flag)
                return action;
        }
        return nullptr;
    }

    QToolButton *button = new QToolButton(this);
};

/// A choice among sample images, none, and the one that the widget came with.
template <typename Image>
class ImageEditor : public ValueEditor
{
public:
    explicit ImageEditor(const std::vector<Sample<Image>> &newSamples)
        : samples(newSamples)
    {
        keepNarrow(box);
        box->setIconSize(QSize(imageSide, imageSide));
        box->addItem(tr("Its own"));
        box->addItem(tr("None"));
        for (const Sample<Image> &sample : samples)
            box->addItem(QIcon(sample.image), sample.name);
        rowOf(this)->addWidget(box);
        guard(box);
        connect(box, qOverload<int>(&QComboBox::activated), this,
                [this](int index) { take(QVariant::fromValue(imageAt(index))); });
    }

protected:
    void showValue(const QVariant &value) override
    {
        const auto image = value.value<Image>();
        if (image.isNull()) {
            box->setCurrentIndex(noneIndex);
            return;
        }
        for (std::size_t i = 0; i < samples.size(); ++i) {
            if (samples[i].image.cacheKey() == image.cacheKey()) {
                box->setCurrentIndex(int(i) + firstSample);
                return;
            }
        }
        own = image;
        box->setItemIcon(ownIndex, QIcon(own));
        box->setCurrentIndex(ownIndex);
    }

private:
    static constexpr int ownIndex = 0;
    static constexpr int noneIndex = 1;
    static constexpr int firstSample = 2;

    Image imageAt(int index) const
    {
        if (index == ownIndex)
            return own;
        return index == noneIndex ? Image() : samples[std::size_t(index - firstSample)].image;
    }

    const std::vector<Sample<Image>> &samples;
    Image own;
    QComboBox *box = new QComboBox(this);
};

ValueEditor *createPointEditor(const PropertyBounds &bounds)
{
    return new NumbersEditor<QPoint, 2>(
        bounds, [](const int *numbers) { return QPoint(numbers[0], numbers[1]); },
        [](const QPoint &point, int *numbers) {
            numbers[0] = point.x();
            numbers[1] = point.y();
        });
}

ValueEditor *createSizeEditor(const PropertyBounds &bounds)
{
    return new NumbersEditor<QSize, 2>(
        bounds, [](const int *numbers) { return QSize(numbers[0], numbers[1]); },
        [](const QSize &size, int *numbers) {
            numbers[0] = size.width();
            numbers[1] = size.height();
        });
}

ValueEditor *createRectEditor(const PropertyBounds &bounds)
{
    return new NumbersEditor<QRect, 4>(
        bounds,
        [](const int *numbers) { return QRect(numbers[0], numbers[1], numbers[2], numbers[3]); },
        [](const QRect &rect, int *numbers) {
            rect.getRect(&numbers[0], &numbers[1], &numbers[2], &numbers[3]);
        });
}

} // namespace

ValueEditor::ValueEditor(QWidget *parent)
    : QWidget(parent)
{}

void ValueEditor::setValue(const QVariant &value)
{
    if (held.isValid() && isSame(held, value))
        return;
    held = value;
    showValue(value);
}

QVariant ValueEditor::value() const
{
    return held;
}

ValueEditor *ValueEditor::create(int type, const PropertyBounds &bounds)
{
    switch (type) {
    case QMetaType::Bool:
        return new BoolEditor;
    case QMetaType::Int:
        return new IntEditor(bounds);
    case QMetaType::Double:
        return new DoubleEditor(bounds);
    case QMetaType::QString:
        return new TextEditor;
    case QMetaType::QColor:
        return new ColorEditor;
    case QMetaType::QFont:
        return new FontEditor;
    case QMetaType::QKeySequence:
        return new KeyEditor;
    case QMetaType::QPoint:
        return createPointEditor(bounds);
    case QMetaType::QSize:
        return createSizeEditor(bounds);
    case QMetaType::QRect:
        return createRectEditor(bounds);
    case QMetaType::QPixmap:
        return new ImageEditor<QPixmap>(samplePixmaps());
    case QMetaType::QIcon:
        return new ImageEditor<QIcon>(sampleIcons());
    default:
        return nullptr;
    }
}

ValueEditor *ValueEditor::create(const QMetaEnum &type)
{
    if (type.isFlag())
        return new FlagsEditor(type);
    auto *editor = new EnumEditor;
    for (int i = 0; i < type.keyCount(); ++i)
        editor->add(QString::fromLatin1(type.key(i)), type.value(i));
    return editor;
}

ValueEditor *ValueEditor::create(const QStringList &names)
{
    auto *editor = new EnumEditor;
    for (int i = 0; i < names.size(); ++i)
        editor->add(names.at(i), i);
    return editor;
}

int ValueEditor::numberOf(const QVariant &value)
{
    if (value.canConvert<int>())
        return value.toInt();
    // Flags are stored as one int, but have no conversion.
    return QMetaType(value.userType()).sizeOf() == int(sizeof(int))
               ? *static_cast<const int *>(value.constData())
               : 0;
}

bool ValueEditor::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Wheel && !static_cast<QWidget *>(watched)->hasFocus()) {
        event->ignore();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void ValueEditor::take(const QVariant &value)
{
    if (isSame(held, value))
        return;
    held = value;
    Q_EMIT edited(value);
}

void ValueEditor::guard(QWidget *input)
{
    input->setFocusPolicy(Qt::StrongFocus);
    input->installEventFilter(this);
}

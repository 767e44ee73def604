// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/ImagePane.h"

#include "app/settings/Settings.h"
#include "app/ui/diff/CheckeredPicture.h"
#include "app/ui/diff/DiffMetrics.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QButtonGroup>
#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QSlider>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace plovik {

namespace {

constexpr int margin = DiffMetrics::margin;
constexpr int pictureGap = 16;
constexpr int textGap = 6;
constexpr int leastHeight = 64;
/// Pictures of up to this side are enlarged to about `iconTarget`.
constexpr int smallSide = 32;
constexpr int iconTarget = 64;
/// A picture that the common factor would draw smaller than this gets a factor of its own.
constexpr int leastSide = 24;

constexpr int choiceGap = 6;

/// What the settings call the modes.
constexpr std::array<const char*, 3> modeNames{"beside", "swipe", "onion"};

PictureMode wantedMode()
{
    const QString name = Settings::shared().value(settings::pictureMode);
    const auto found = std::ranges::find_if(modeNames, [&](const char* each) { return name == QLatin1String(each); });
    return found == modeNames.end() ? PictureMode::beside : static_cast<PictureMode>(found - modeNames.begin());
}

int longerSide(QSize size) { return std::max(size.width(), size.height()); }

QString pixelText(QSize pixels) { return ImagePane::tr("%1 × %2").arg(pixels.width()).arg(pixels.height()); }

QString sizesOf(const PictureSide& side)
{
    if (!side.picture.pixels.isValid())
        return shownSize(side.fileSize);
    return ImagePane::tr("%1 · %2").arg(pixelText(side.picture.pixels), shownSize(side.fileSize));
}

double fittingFactor(QSize pixels, QSize room)
{
    return std::min({1.0, double(room.width()) / pixels.width(), double(room.height()) / pixels.height()});
}

/// Returns the factor that enlarges a small picture. It is a whole number, so that the pixels stay squares.
int enlargement(QSize pixels, QSize room)
{
    if (longerSide(pixels) > smallSide)
        return 1;
    const int wanted = std::max(1, iconTarget / std::max(1, longerSide(pixels)));
    return std::max(1, std::min({wanted, room.width() / pixels.width(), room.height() / pixels.height()}));
}

QSize scaled(QSize size, double factor) { return (QSizeF(size) * factor).toSize().expandedTo(QSize(1, 1)); }

/// Returns a sentence about the file's size, or about pixels and size when the pixels can be compared. `pixels` is what
/// it begins with then.
QString fileSizeChange(std::uint64_t before, std::uint64_t after, const QString& pixels)
{
    const bool isAlone = pixels.isEmpty();
    if (before == after)
        return isAlone ? ImagePane::tr("The same file size.") : ImagePane::tr("%1, the same file size.").arg(pixels);
    if (after > before)
        return isAlone ? ImagePane::tr("%1 larger.").arg(shownSize(after - before))
                       : ImagePane::tr("%1, %2 larger.").arg(pixels, shownSize(after - before));
    return isAlone ? ImagePane::tr("%1 smaller.").arg(shownSize(before - after))
                   : ImagePane::tr("%1, %2 smaller.").arg(pixels, shownSize(before - after));
}

} // namespace

ImagePane::ImagePane(PicturePair pair, QWidget* parent)
    : QWidget(parent), pair_(std::move(pair)), change_(new QLabel(this))
{
    const bool isChange = pair_.before && pair_.after;
    const bool isConflict = pair_.conflict != ConflictNames();
    if (pair_.before)
        before_ = makeSide(*pair_.before, isConflict ? pair_.conflict.ours : isChange ? tr("Before") : tr("Deleted"));
    if (pair_.after)
        after_ = makeSide(*pair_.after, isConflict ? pair_.conflict.theirs : isChange ? tr("After") : tr("Added"));
    change_->setTextFormat(Qt::PlainText);
    change_->setWordWrap(true);
    change_->setText(changeText());
    setAccessibleName(tr("Picture"));
    setAccessibleDescription(change_->text());
    if (before_ && after_ && before_->picture && after_->picture)
        makeChoice();
    applyTheme();
}

void ImagePane::makeChoice()
{
    comparison_ = new PictureComparison(pair_.before->picture.image, pair_.after->picture.image, this);
    comparison_->setAccessibleName(tr("Compared Pictures"));
    slider_ = new QSlider(Qt::Horizontal, this);
    slider_->setRange(0, 100);
    slider_->setValue(50);
    slider_->setPageStep(10);
    slider_->setLayoutDirection(Qt::LeftToRight); // as the picture beside it
    auto* const group = new QButtonGroup(this);
    for (const QString& title : {tr("Beside"), tr("Swipe"), tr("Onion Skin")}) {
        auto* const button = new QPushButton(title, this);
        button->setAccessibleName(title);
        button->setProperty("compact", true);
        button->setCheckable(true);
        const auto index = choice_.size();
        connect(button, &QPushButton::clicked, this,
                [index] { Settings::shared().set(settings::pictureMode, QString::fromLatin1(modeNames[index])); });
        group->addButton(button);
        choice_.push_back(button);
    }
    connect(slider_, &QSlider::valueChanged, comparison_, &PictureComparison::setShare);
    connect(comparison_, &PictureComparison::shareMoved, slider_, &QSlider::setValue);
    connect(&Settings::shared(), &Settings::changed, this, [this](const QString& key) {
        if (key == QLatin1String(settings::pictureMode.key))
            followMode();
    });
    followMode();
}

void ImagePane::followMode()
{
    mode_ = wantedMode();
    choice_[static_cast<std::size_t>(mode_)]->setChecked(true);
    comparison_->setMode(mode_);
    comparison_->setVisible(isOver());
    slider_->setVisible(isOver());
    slider_->setAccessibleName(mode_ == PictureMode::onion ? tr("Share of the New Picture") : tr("Place of the Line"));
    before_->picture->setVisible(!isOver());
    after_->picture->setVisible(!isOver());
    updateGeometry();
    place();
    Q_EMIT heightChanged();
}

int ImagePane::choiceHeight() const { return choice_.empty() ? 0 : choice_.front()->sizeHint().height() + choiceGap; }

int ImagePane::sliderHeight() const { return isOver() ? slider_->sizeHint().height() + textGap : 0; }

/// Returns how wide each picture may be.
int ImagePane::pictureWidth(int width) const
{
    return isOver() ? std::max(80, width - 2 * margin) : columnWidth(width);
}

ImagePane::Side ImagePane::makeSide(const PictureSide& side, const QString& title)
{
    Side made{new QLabel(title, this), nullptr, new QLabel(this)};
    for (QLabel* const label : {made.title, made.caption})
        label->setTextFormat(Qt::PlainText);
    made.caption->setWordWrap(true);
    made.caption->setTextInteractionFlags(Qt::TextSelectableByMouse);
    if (side.picture.image.isNull()) {
        made.caption->setText(side.picture.problem + u'\n' + sizesOf(side));
    } else {
        made.caption->setText(sizesOf(side));
        made.picture = new CheckeredPicture(side.picture.image, this);
        made.picture->setAccessibleName(title);
        made.picture->setAccessibleDescription(sizesOf(side));
        made.picture->setToolTip(plainToolTip(sizesOf(side)));
    }
    return made;
}

QString ImagePane::changeText() const
{
    if (!pair_.before || !pair_.after)
        return {};
    if (pair_.conflict != ConflictNames())
        return pair_.areSamePixels ? tr("Every pixel is the same") : QString();
    const PictureSide& before = *pair_.before;
    const PictureSide& after = *pair_.after;
    QString pixels;
    if (pair_.areSamePixels)
        pixels = tr("Every pixel is the same");
    else if (before.picture.pixels.isValid() && after.picture.pixels.isValid() &&
             before.picture.pixels != after.picture.pixels)
        pixels = tr("Resized from %1 to %2").arg(pixelText(before.picture.pixels), pixelText(after.picture.pixels));
    else if (before.picture.pixels.isValid() && after.picture.pixels.isValid())
        pixels = tr("The same size in pixels");
    return fileSizeChange(before.fileSize, after.fileSize, pixels);
}

bool ImagePane::setRoom(int height)
{
    if (height == room_)
        return false;
    room_ = height;
    place();
    return true;
}

int ImagePane::columnWidth(int width) const
{
    const int inner = std::max(80, width - 2 * margin);
    return before_ && after_ ? (inner - pictureGap) / 2 : inner;
}

int ImagePane::captionHeight(int width) const
{
    int height = 0;
    for (const auto& side : {before_, after_}) {
        if (side)
            height = std::max(height, side->caption->heightForWidth(columnWidth(width)));
    }
    return height;
}

ImagePane::Drawn ImagePane::drawnSizes(int width) const
{
    const int title = QFontMetrics(Theme::font()).height();
    const int around = 2 * title + captionHeight(width) + 5 * textGap + margin + choiceHeight() + sliderHeight();
    const QSize room(pictureWidth(width) - 2, std::max(leastHeight, room_ - around));
    const auto pixelsOf = [](const std::optional<PictureSide>& side) {
        return side && !side->picture.image.isNull() ? side->picture.pixels : QSize();
    };
    const QSize before = pixelsOf(pair_.before);
    const QSize after = pixelsOf(pair_.after);
    double factor = 1;
    int larger = iconTarget;
    for (const QSize pixels : {before, after}) {
        if (pixels.isEmpty())
            continue;
        factor = std::min(factor, fittingFactor(pixels, room));
        larger = std::min(larger, enlargement(pixels, room));
    }
    const auto drawn = [&](QSize pixels) {
        if (pixels.isEmpty())
            return QSize();
        const QSize common = scaled(pixels, factor < 1 ? factor : larger);
        if (longerSide(common) >= leastSide)
            return common;
        const double own = fittingFactor(pixels, room);
        return scaled(pixels, own < 1 ? own : enlargement(pixels, room));
    };
    return {drawn(before), drawn(after)};
}

int ImagePane::heightForWidth(int width) const
{
    const Drawn drawn = drawnSizes(width);
    const int pictures = std::max({0, drawn.before.height(), drawn.after.height()});
    const int title = QFontMetrics(Theme::font()).height();
    const int change =
        change_->text().isEmpty() ? 0 : textGap + change_->heightForWidth(std::max(80, width - 2 * margin));
    return margin / 2 + choiceHeight() + title + textGap + sliderHeight() + pictures + 2 + textGap +
           captionHeight(width) + change + margin / 2;
}

void ImagePane::placeSide(Side& side, QSize drawn, int left, int width, int pictureHeight)
{
    const int title = QFontMetrics(Theme::font()).height();
    int y = margin / 2 + choiceHeight();
    side.title->setGeometry(left, y, width, title);
    y += title + textGap;
    if (side.picture) {
        side.picture->setDrawnSize(drawn);
        side.picture->move(left, y);
    }
    y += pictureHeight + 2 + textGap + sliderHeight();
    side.caption->setGeometry(left, y, width, captionHeight(this->width()));
}

void ImagePane::place()
{
    const Drawn drawn = drawnSizes(width());
    const int column = columnWidth(width());
    const int pictures = std::max({0, drawn.before.height(), drawn.after.height()});
    int left = margin;
    for (QPushButton* const button : choice_) {
        button->setGeometry(QRect(QPoint(left, margin / 2), button->sizeHint()));
        left += button->width() + 4;
    }
    left = margin;
    if (isOver()) {
        const int top = margin / 2 + choiceHeight() + QFontMetrics(Theme::font()).height() + textGap;
        comparison_->setDrawnSizes(drawn.before, drawn.after);
        comparison_->move(margin, top);
        // The handle is at the line, as far as a slider allows.
        slider_->setInvertedAppearance(mode_ == PictureMode::swipe);
        slider_->setGeometry(margin, top + pictures + 2 + textGap, std::max(160, comparison_->width()),
                             slider_->sizeHint().height());
    }
    if (before_) {
        placeSide(*before_, drawn.before, left, column, pictures);
        left += column + pictureGap;
    }
    if (after_)
        placeSide(*after_, drawn.after, left, column, pictures);
    const int inner = std::max(80, width() - 2 * margin);
    const int change = change_->heightForWidth(inner);
    change_->setGeometry(margin, height() - margin / 2 - change, inner, change);
    change_->setVisible(!change_->text().isEmpty());
}

void ImagePane::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    place();
}

void ImagePane::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ApplicationFontChange)
        applyTheme();
}

void ImagePane::applyTheme()
{
    QPalette quiet;
    for (const auto role : {QPalette::WindowText, QPalette::Text})
        quiet.setColor(role, Theme::current().secondaryText);
    change_->setFont(Theme::font());
    for (const auto& side : {before_, after_}) {
        if (!side)
            continue;
        side->title->setFont(Theme::font(0, QFont::DemiBold));
        side->caption->setFont(Theme::font());
        side->caption->setPalette(quiet);
    }
    place();
}

} // namespace plovik

#include "moc_ImagePane.cpp"

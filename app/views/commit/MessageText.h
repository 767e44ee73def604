#pragma once

#include <QTextBrowser>

namespace plovik {

/// A commit's message to read, select and copy: the subject strong, the body as it was written, web addresses as links.
/// As high as its text; what it stands in scrolls. Main thread.
class MessageText : public QTextBrowser {
    Q_OBJECT

public:
    explicit MessageText(QWidget* parent = nullptr);

    void setMessage(const QString& subject, const QString& body);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {80, 0}; }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void write();

    QString subject_, body_;
};

} // namespace plovik

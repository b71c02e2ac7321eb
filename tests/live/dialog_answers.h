#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTimer>
#include <functional>

/// Waits for a dialog, which stops everything else until it is answered.
class DialogAnswer {
public:
    /// `answer` is tried on the dialog in front until it returns true.
    explicit DialogAnswer(std::function<bool(QWidget& dialog)> answer) {
        timer.setInterval(10);
        QObject::connect(&timer, &QTimer::timeout, [this, answer = std::move(answer)] {
            QWidget* dialog = QApplication::activeModalWidget();
            if (dialog == nullptr || !dialog->isVisible()) return;
            // It may be that answering it opens the next one.
            timer.stop();
            if (!answer(*dialog)) timer.start();
        });
        timer.start();
    }

    bool isGiven() const { return !timer.isActive(); }

private:
    QTimer timer;
};

/// Answers the next message box, and keeps what it said.
class MessageAnswer {
public:
    explicit MessageAnswer(QMessageBox::StandardButton button)
        : answer([this, button](QWidget& dialog) {
              auto* box = qobject_cast<QMessageBox*>(&dialog);
              if (box == nullptr) return false;
              text = box->text();
              box->button(button)->click();
              return true;
          }) {}

    QString text;

private:
    DialogAnswer answer;
};

/// Names a file in the next file dialog.
class FileAnswer {
public:
    explicit FileAnswer(const QString& file)
        : answer([file](QWidget& dialog) {
              auto* files = qobject_cast<QFileDialog*>(&dialog);
              if (files == nullptr) return false;
              files->findChild<QLineEdit*>()->setText(file);
              QMetaObject::invokeMethod(files, "accept");
              return true;
          }) {}

private:
    DialogAnswer answer;
};

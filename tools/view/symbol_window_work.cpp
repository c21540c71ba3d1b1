// What is done in the window of symbols: choose, edit, check, save, compare.
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QStandardPaths>
#include <algorithm>
#include <utility>

#include "tools/view/phrases.h"
#include "tools/view/symbol_window.h"

namespace zm::view {

// ---- the library ----

void SymbolWindow::Open(const QString& file, int code) {
    m_doing->setText(Say("reading"));
    m_link.Ask("open", {{"do", "open"}, {"file", file}}, [this, file, code](const QJsonObject& answer) {
        if (answer.contains("error")) {
            m_doing->setText(answer["error"].toString());
            if (m_file.isEmpty()) End(3, answer["error"].toString());
            return;
        }
        m_doing->clear();
        m_file = file;
        m_shipped = answer["shipped"].toBool();
        m_edits.clear();
        m_faulty.clear();
        FillList(answer["symbols"].toArray());
        ShowCode(m_texts.contains(code) || m_texts.isEmpty() ? code : m_texts.firstKey());
        if (!m_other.isEmpty()) CompareWith(m_other);
    });
}

void SymbolWindow::FillList(const QJsonArray& symbols) {
    m_setting = true;
    m_list->clear();
    m_items.clear();
    m_texts.clear();
    m_iconless.clear();
    // Rows are as high as they will be with their pictures, so that the list stays where it was scrolled to.
    QPixmap blank(m_list->iconSize());
    blank.fill(Qt::transparent);
    for (const QJsonValue one : symbols) {
        const int code = one["code"].toInt();
        m_texts[code] = one["text"].toString();
        m_items[code] =
            new QTreeWidgetItem(m_list, {QString::number(code), one["kind"].toString(), one["note"].toString()});
        m_items[code]->setIcon(0, blank);
        m_items[code]->setToolTip(2, one["note"].toString());
        m_iconless.insert(code);
    }
    m_setting = false;
    Filter();
}

void SymbolWindow::ShowCode(int code) {
    if (m_rest.isActive()) TakeText();  // of the symbol before
    m_rest.stop();
    m_code = code;
    m_setting = true;
    if (QTreeWidgetItem* item = ItemOf(code)) {
        item->setHidden(false);
        m_list->setCurrentItem(item);
        m_list->scrollToItem(item);
    }
    const bool elsewhere = m_otherTexts.contains(code) && !m_texts.contains(code);
    m_text->setPlainText(m_edits.value(code, m_texts.value(code)));
    m_text->setReadOnly(elsewhere);
    m_setting = false;
    for (SymbolPane* pane : m_panes) pane->Clear();
    m_otherPane->Clear();
    ShowState();
    ShowDifference();
    Look();
}

// ---- the text ----

void SymbolWindow::TakeText() {
    m_rest.stop();
    const QString text = m_text->toPlainText();
    if (m_edits.value(m_code, m_texts.value(m_code)) == text) return;
    if (text == m_texts.value(m_code) && m_texts.contains(m_code))
        m_edits.remove(m_code);
    else
        m_edits[m_code] = text;
    m_faulty.erase(m_code);
    ShowState();
    Look();
}

// An edit that nothing can be drawn with concerns its own symbol alone until it is mended; what is saved is whole.
QJsonArray SymbolWindow::Edits(bool all) const {
    QJsonArray edits;
    for (auto i = m_edits.cbegin(); i != m_edits.cend(); ++i)
        if (all || i.key() == m_code || m_faulty.count(i.key()) == 0)
            edits.append(QJsonObject{{"code", i.key()}, {"text", i.value()}});
    return edits;
}

void SymbolWindow::Look() {
    m_checked = false;
    const QJsonArray edits = Edits(false);
    for (SymbolPane* pane : m_panes) AskPicture(pane, m_file, edits);
    if (m_otherPane->isVisible()) AskPicture(m_otherPane, m_other, {});
    m_link.Ask("check", {{"do", "check"}, {"file", m_file}, {"edits", edits}, {"code", m_code}},
               [this, code = m_code](const QJsonObject& answer) {
                   if (answer.contains("error") && m_edits.contains(code)) m_faulty.insert(code);
                   if (code != m_code) return;
                   m_checked = true;
                   ShowRemarks(answer);
               });
}

void SymbolWindow::AskPicture(SymbolPane* pane, const QString& file, const QJsonArray& edits) {
    if (file.isEmpty() || m_code == 0) return;
    const double ratio = pane->devicePixelRatioF();
    const QJsonObject question = {{"do", "draw"},
                                  {"file", file},
                                  {"edits", edits},
                                  {"code", m_code},
                                  {"sample", pane->sample()},
                                  {"width", pane->pixels().width()},
                                  {"height", pane->pixels().height()},
                                  {"x", pane->middle().x()},
                                  {"y", pane->middle().y()},
                                  {"perMillimetre", pane->perMillimetre() * ratio}};
    pane->SetWaiting();
    m_link.Ask(pane->objectName(), question, [this, pane, ratio, code = m_code](const QJsonObject& answer) {
        if (code != m_code) return;
        if (answer["lost"].toBool()) m_faulty.insert(code);
        m_doing->setText(answer["error"].toString() + answer["message"].toString());
        if (answer.contains("error")) return pane->KeepPicture();
        const QPointF middle(answer["x"].toDouble(), answer["y"].toDouble());
        const QSize pixels(answer["width"].toInt(), answer["height"].toInt());
        pane->Take(answer["nothing"].toBool() ? QImage() : m_link.Picture(pixels), middle,
                   answer["perMillimetre"].toDouble() / ratio);
    });
}

// The first code in view that has no picture yet, 0 if there is none.
int SymbolWindow::SeenIconless() const {
    const int bottom = m_list->viewport()->height();
    for (QTreeWidgetItem* item = m_list->itemAt(0, 0); item != nullptr && m_list->visualItemRect(item).top() < bottom;
         item = m_list->itemBelow(item))
        if (const int code = item->text(0).toInt(); m_iconless.count(code) != 0) return code;
    return 0;
}

// The small pictures of the list, one at a time while nothing else is to be done: those in view first.
void SymbolWindow::AskIcon() {
    if (m_iconless.empty() || m_file.isEmpty()) return;
    const int seen = SeenIconless(), code = seen != 0 ? seen : *m_iconless.begin();
    const QSize size = m_list->iconSize() * m_list->devicePixelRatioF();
    m_link.Ask("icon",
               {{"do", "draw"},
                {"file", m_file},
                {"edits", Edits(false)},
                {"code", code},
                {"sample", "alone"},
                {"width", size.width()},
                {"height", size.height()},
                {"x", 0},
                {"y", 0},
                {"perMillimetre", 0}},
               [this, code, size](const QJsonObject& answer) {
                   m_iconless.erase(code);
                   if (answer["nothing"].toBool() || answer.contains("error") || ItemOf(code) == nullptr) return;
                   QPixmap icon = QPixmap::fromImage(m_link.Picture(size));
                   icon.setDevicePixelRatio(m_list->devicePixelRatioF());
                   ItemOf(code)->setIcon(0, icon);
               });
}

void SymbolWindow::ShowRemarks(const QJsonObject& answer) {
    std::vector<LineRemark> remarks;
    if (answer.contains("error")) remarks.push_back({0, true, answer["error"].toString()});
    for (const QJsonValue one : answer["findings"].toArray()) {
        const int line = one["line"].toInt(), code = one["code"].toInt();
        const QString where = line == 0 && code != 0 ? Say("Code") + " " + QString::number(code) + ": " : QString();
        remarks.push_back({line, one["lost"].toBool(), where + one["text"].toString()});
    }
    m_text->SetRemarks(remarks);
    m_remarks->clear();
    for (const LineRemark& remark : remarks) {
        const QString where = remark.line > 0 ? Say("Line") + " " + QString::number(remark.line) + ": " : QString();
        auto* item = new QListWidgetItem(where + remark.text, m_remarks);
        item->setData(Qt::UserRole, remark.line);
        if (remark.grave) item->setForeground(QColor(200, 40, 40));
    }
    if (remarks.empty()) m_remarks->addItem(Say("nothing to remark"));
    if (!answer.contains("kind")) return m_about->clear();
    QString about = QString("%1 %2  %3").arg(m_code).arg(answer["kind"].toString(), answer["note"].toString());
    if (answer["size"].toDouble() > 0.0) about += QString("   %1 mm").arg(answer["size"].toDouble(), 0, 'f', 2);
    about += "   " + Say("line width") + QString(" %1 mm").arg(answer["width"].toDouble(), 0, 'f', 2);
    m_about->setText(about);
    if (QTreeWidgetItem* item = ItemOf(m_code)) {
        item->setText(1, answer["kind"].toString());
        item->setText(2, answer["note"].toString());
    }
}

void SymbolWindow::TakeBack() {
    if (m_edits.remove(m_code) == 0) return;
    m_faulty.erase(m_code);
    m_rest.stop();
    ShowCode(m_code);
}

// ---- saving ----

// False where the reader wants to stay.
bool SymbolWindow::AskToSave() {
    if (m_rest.isActive()) TakeText();
    if (m_edits.isEmpty()) return true;
    const auto answer =
        QMessageBox::question(this, Say("Symbols"), Say("Symbols were changed and are not saved. Leave them?"),
                              QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Cancel);
    return answer == QMessageBox::Discard;
}

void SymbolWindow::Save() {
    m_shipped || !QFileInfo(m_file).isWritable() ? SaveAs() : SaveTo(m_file);
}

void SymbolWindow::SaveAs() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString proposed = m_shipped ? folder + "/my-symbols.dat" : m_file;
    QString file = QFileDialog::getSaveFileName(this, Say("Save the library"), proposed,
                                                Say("Symbol library") + " (*.dat);;" + Say("All files") + " (*)");
    if (file.isEmpty()) return;
    if (QFileInfo(file).suffix().isEmpty()) file += ".dat";
    SaveTo(file);
}

void SymbolWindow::SaveTo(const QString& file) {
    if (m_rest.isActive()) TakeText();
    m_link.Ask("save", {{"do", "save"}, {"file", m_file}, {"edits", Edits(true)}, {"to", file}},
               [this, file](const QJsonObject& answer) {
                   if (answer.contains("error")) {
                       m_doing->setText(answer["error"].toString());
                       QMessageBox::warning(this, Say("Symbols"), answer["error"].toString());
                       return;
                   }
                   Open(file, m_code);
                   m_doing->setText(file + ": " + Say("written"));
                   emit Saved(file);
               });
}

// ---- another library ----

void SymbolWindow::CompareWith(const QString& file) {
    const auto take = [this, file](const QJsonObject& answer) {
        if (answer.contains("error")) {
            m_doing->setText(answer["error"].toString());
            return;
        }
        m_other = file;
        m_differences.clear();
        for (const QJsonValue one : answer["changed"].toArray())
            m_differences[one["code"].toInt()] = one["text"].toString();
        for (const QJsonValue one : answer["here"].toArray()) m_differences[one.toInt()] = QString();
        for (const int code : m_otherTexts.keys())
            if (!m_texts.contains(code)) delete m_items.take(code);
        m_otherTexts.clear();
        m_setting = true;
        for (QTreeWidgetItem* item : m_items) item->setText(3, QString());
        for (const QJsonValue one : answer["changed"].toArray())
            if (QTreeWidgetItem* item = ItemOf(one["code"].toInt())) item->setText(3, Say("changed"));
        for (const QJsonValue one : answer["here"].toArray())
            if (QTreeWidgetItem* item = ItemOf(one.toInt())) item->setText(3, Say("only here"));
        for (const QJsonValue one : answer["there"].toArray()) {
            const int code = one["code"].toInt();
            m_otherTexts[code] = one["text"].toString();
            if (!m_items.contains(code))
                m_items[code] = new QTreeWidgetItem(
                    m_list, {QString::number(code), one["kind"].toString(), one["note"].toString()});
            m_items[code]->setText(3, Say("only there"));
        }
        m_setting = false;
        m_otherPane->setVisible(!m_other.isEmpty());
        m_otherPane->SetCaption(QFileInfo(m_other).fileName());
        Filter();
        ShowCode(m_code);
    };
    if (file.isEmpty()) return take({});
    m_link.Ask("compare", {{"do", "compare"}, {"file", m_file}, {"edits", Edits(false)}, {"other", file}}, take);
}

void SymbolWindow::ShowDifference() {
    m_difference->setVisible(!m_other.isEmpty());
    if (m_other.isEmpty()) return;
    const QString name = QFileInfo(m_other).fileName();
    if (m_differences.contains(m_code))
        m_difference->setPlainText(m_differences[m_code].isEmpty() ? name + ": " + Say("has no such symbol")
                                                                   : m_differences[m_code]);
    else if (m_otherTexts.contains(m_code))
        m_difference->setPlainText(Say("only there") + "\n" + m_otherTexts[m_code]);
    else
        m_difference->setPlainText(Say("alike"));
}

// ---- the end ----

bool SymbolWindow::isWhole() const {
    return m_checked && m_link.idle("icon") && SeenIconless() == 0 && !m_rest.isActive() &&
           std::all_of(m_panes.begin(), m_panes.end(), [](const SymbolPane* pane) { return pane->isWhole(); });
}

void SymbolWindow::TakePicture() {
    if (!m_job.picture.isEmpty() && isWhole()) WritePicture();
}

}  // namespace zm::view

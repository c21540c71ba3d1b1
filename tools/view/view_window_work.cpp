// What one does on the map: identify, find, measure, copy, export, settings.
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLineEdit>
#include <QMessageBox>
#include <QProcess>
#include <algorithm>
#include <cmath>

#include "tools/view/editor.h"
#include "tools/view/phrases.h"
#include "tools/view/symbol_window.h"
#include "tools/view/view_window.h"
#include "tools/view/worker_link.h"

namespace zm::view {
namespace {

constexpr double kSnapPixels = 10.0;
constexpr double kPointView = 60.0;  // metres around a place that was found

QString Metres(double metres, int decimals = 3) {
    return QString::number(metres, 'f', decimals);
}

// Square metres, with hectares and mu where that is a large number.
QString AreaText(double squareMetres) {
    QString text = Metres(squareMetres, 2) + " m²";
    if (squareMetres >= 1000.0)
        text += QString(" = %1 ha = %2 %3")
                    .arg(squareMetres / 1e4, 0, 'f', 4)
                    .arg(squareMetres * 3.0 / 2000.0, 0, 'f', 3)
                    .arg(SpeaksChinese() ? QStringLiteral("亩") : QStringLiteral("mu"));
    return text;
}

QTreeWidgetItem* Row(QTreeWidgetItem* under, const QString& name, const QString& value) {
    auto* row = new QTreeWidgetItem(under, {name, value});
    row->setToolTip(1, value);
    return row;
}

// What makes a file of a whole drawing or recording.
QStringList VerbFor(const QString& input, const QString& file) {
    if (!IsDrawing(input)) return {"replay"};
    return {"dwg", file.endsWith(".dxf", Qt::CaseInsensitive) ? "to-dxf" : "draw"};
}

}  // namespace

// ---- the cursor ----

void ViewWindow::ShowCursor(QPointF plane) {
    m_plane->setText(QString("E %1  N %2").arg(plane.x(), 0, 'f', 2).arg(plane.y(), 0, 'f', 2));
    if (m_link == nullptr) return;
    if (m_askingWhere) {
        m_askAgain = true;
        return;
    }
    m_askingWhere = true;
    m_link->Ask({{"do", "where"}, {"x", plane.x()}, {"y", plane.y()}}, [this](const QJsonObject& answer) {
        m_askingWhere = false;
        m_degrees->setText(answer["text"].toString());
        if (std::exchange(m_askAgain, false)) ShowCursor(m_map->cursor());
    });
}

void ViewWindow::CopyCoordinate() {
    if (m_messages->hasFocus()) {
        QStringList lines;
        for (const QListWidgetItem* item : m_messages->selectedItems()) lines << item->text();
        return QApplication::clipboard()->setText(lines.join('\n'));
    }
    const QPointF at = m_map->cursor();
    // Northing first, as coord reads it; a number after the two would be a third one, so the letters of degrees go first.
    QString text = Metres(at.y()) + " " + Metres(at.x());
    for (const QString& angle : m_degrees->text().split("  ", Qt::SkipEmptyParts))
        text += (text.contains('\t') ? " " : "\t") + angle.right(1) + angle.chopped(1);
    QApplication::clipboard()->setText(text);
    m_doing->setText(text);
}

void ViewWindow::CopyPicture() {
    QApplication::clipboard()->setImage(m_map->Seen());
}

// ---- identify ----

void ViewWindow::Identify(QPointF plane, double reach) {
    if (m_link == nullptr) return;
    m_link->Ask({{"do", "identify"}, {"x", plane.x()}, {"y", plane.y()}, {"reach", reach}},
                [this](const QJsonObject& answer) { ShowHits(answer); });
}

void ViewWindow::ShowHits(const QJsonObject& answer) {
    m_feature->clear();
    const QJsonArray hits = answer["hits"].toArray();
    m_featureDock->setWindowTitle(hits.isEmpty() ? Say("no feature at this place")
                                                 : Say("At this place: ") + QString::number(answer["count"].toInt()));
    std::vector<QPolygonF> outline;
    for (const QJsonValue value : hits) {
        const QJsonObject hit = value.toObject();
        auto* top = new QTreeWidgetItem(m_feature, {hit["where"].toString()});
        top->setFirstColumnSpanned(true);
        top->setToolTip(0, hit["where"].toString());
        if (hit.contains("length")) Row(top, Say("Length"), Metres(hit["length"].toDouble(), 2) + " m");
        if (hit.contains("area"))  // a line for each unit: the panel is narrow
            Row(top, Say("Area"), AreaText(hit["area"].toDouble()).replace(" = ", "\n= "));
        for (const QJsonValue one : hit["rules"].toArray()) {
            const QJsonObject rule = one.toObject();
            QTreeWidgetItem* row =
                Row(top, Say("Rule"),
                    QFileInfo(m_about["rules"].toString()).fileName() + ":" + QString::number(rule["line"].toInt()));
            row->setData(0, Qt::UserRole, rule["line"].toInt());
            row->setToolTip(0, Say("Edit this rule"));
            row->setToolTip(1, rule["text"].toString());
            Row(row, Say("Condition"), "[" + rule["section"].toString() + "]\n" + rule["condition"].toString());
            QTreeWidgetItem* symbol =
                Row(row, Say("Symbol"), QString::number(rule["symbol"].toInt()) + " " + rule["note"].toString());
            symbol->setData(0, kSymbolRole, rule["symbol"].toInt());
            symbol->setToolTip(0, Say("Edit this symbol"));
            Row(row, Say("Layer code"), QString::number(rule["layer"].toInt()));
            if (!rule["label"].toString().isEmpty()) Row(row, Say("Label"), rule["label"].toString());
        }
        QTreeWidgetItem* fields = Row(top, Say("Attributes"), {});
        for (const QJsonValue one : hit["fields"].toArray())
            Row(fields, one.toArray()[0].toString(), one.toArray()[1].toString());
        if (!outline.empty()) continue;
        top->setExpanded(true);
        for (int i = 0; i < top->childCount(); ++i) top->child(i)->setExpanded(true);
        for (const QJsonValue chain : hit["outline"].toArray()) {
            QPolygonF points;
            for (const QJsonValue p : chain.toArray())
                points << QPointF(p.toArray()[0].toDouble(), p.toArray()[1].toDouble());
            outline.push_back(points);
        }
    }
    m_feature->resizeColumnToContents(0);
    m_map->SetHighlight(std::move(outline));
    if (hits.isEmpty() && !m_featureDock->isVisible()) return;
    m_featureDock->show();
    m_featureDock->raise();
    Log({{"identified", answer}});
}

void ViewWindow::EditRule(const QString& file, int line) {
    Log({{"edit", file}, {"line", line}});
    if (!OpenInEditor(file, line)) Note(file + ":" + QString::number(line));
}

// The library that the map draws with, in a window of its own.
void ViewWindow::OpenSymbols(int code) {
    if (m_symbols != nullptr) {
        if (code > 0) m_symbols->ShowCode(code);
    } else {
        ViewJob job;
        job.program = m_job.program;
        job.inputs << m_about["symbols"].toString();
        job.options << "--code=" + QString::number(code);
        for (const QString& option : m_job.options)
            if (option.startsWith("--project=")) job.options << option;
        m_symbols = new SymbolWindow(job, this);
        m_symbols->setAttribute(Qt::WA_DeleteOnClose);
        m_symbols->ServeMap();
        connect(m_symbols, &SymbolWindow::Saved, this, &ViewWindow::TakeSymbols);
    }
    m_symbols->show();
    m_symbols->raise();
    m_symbols->activateWindow();
}

// The map draws with what was saved, wherever that is; a file that it draws with already is watched.
void ViewWindow::TakeSymbols(const QString& file) {
    Note(file + ": " + Say("written"));
    if (!m_symbols->servesMap() || m_about["drawn"].toBool()) return;
    m_job.options.removeIf([](const QString& one) { return one.startsWith("--symbols="); });
    m_job.options << "--symbols=" + file;
    m_readAgain = true;
    Start();
}

// ---- search ----

void ViewWindow::Search() {
    if (m_link == nullptr || m_search->text().trimmed().isEmpty()) return;
    m_link->Ask({{"do", "search"}, {"text", m_search->text()}}, [this](const QJsonObject& answer) {
        if (answer["dropped"].toBool()) return;  // a newer one is on its way
        m_found->clear();
        const QJsonArray found = answer["found"].toArray();
        for (const QJsonValue one : found) {
            auto* item = new QListWidgetItem(one.toObject()["title"].toString(), m_found);
            item->setData(Qt::UserRole, one.toObject());
            item->setToolTip(item->text());
        }
        m_foundDock->setWindowTitle(found.isEmpty() ? Say("nothing found")
                                                    : QString::number(found.size()) +
                                                          (answer["more"].toBool() ? "+ " : " ") + Say("found"));
        m_foundDock->show();
        m_foundDock->raise();
        if (!found.isEmpty()) GoTo(found.first().toObject());
        Log({{"found", found.size()}});
    });
}

void ViewWindow::GoTo(const QJsonObject& found) {
    const QJsonArray b = found["box"].toArray();
    QRectF box(QPointF(b[0].toDouble(), b[1].toDouble()), QPointF(b[2].toDouble(), b[3].toDouble()));
    m_map->SetHighlight({QPolygonF{box.center()}});
    if (found["kind"].toString() != "sheet") {
        const double around = std::max(kPointView, std::max(box.width(), box.height()));
        box.adjust(-around, -around, around, around);
    } else {
        m_map->SetHighlight({QPolygonF(box)});
    }
    m_map->Fit(box);
    m_map->setFocus();
}

// ---- measuring ----

void ViewWindow::TakeTool(Tool tool) {
    m_map->SetTool(tool);
    m_tools[static_cast<int>(tool)]->setChecked(true);
    if (tool == Tool::distance || tool == Tool::area)
        m_map->SetReadout(Say("Measuring: click points, Backspace takes the last one back, Esc ends."));
    m_map->setFocus();
}

void ViewWindow::TakeMeasured(bool added) {
    if (m_link == nullptr) return;
    if (!added || !m_snap->isChecked()) return ShowMeasured();
    const QPointF last = m_map->measured().last();
    m_link->Ask({{"do", "snap"}, {"x", last.x()}, {"y", last.y()}, {"reach", kSnapPixels * m_map->viewport().pixel}},
                [this](const QJsonObject& answer) {
                    if (answer.contains("x")) m_map->SnapLast({answer["x"].toDouble(), answer["y"].toDouble()});
                    ShowMeasured();
                });
}

void ViewWindow::ShowMeasured() {
    const QPolygonF points = m_map->measured();
    if (points.isEmpty() || m_link == nullptr) return m_map->SetReadout({});
    QJsonArray xy;
    for (const QPointF& p : points) {
        xy.append(p.x());
        xy.append(p.y());
    }
    m_link->Ask({{"do", "measure"}, {"xy", xy}}, [this](const QJsonObject& answer) {
        const bool ring = m_map->tool() == Tool::area && answer.contains("area");
        const auto line = [&](const char* title, const char* plane, const char* ellipsoid, bool area) {
            const auto text = [&](const char* key) {
                return area ? AreaText(answer[key].toDouble()) : Metres(answer[key].toDouble()) + " m";
            };
            QString shown = Say(title) + " " + Say("in the plane") + ": " + text(plane);
            if (answer.contains(ellipsoid))
                shown += "\n" + Say(title) + " " + Say("on the ellipsoid") + ": " + text(ellipsoid);
            return shown;
        };
        QString text = ring ? line("Area", "area", "ellipsoidArea", true) + "\n" +
                                  line("Perimeter", "perimeter", "ellipsoidPerimeter", false)
                            : line("Length", "length", "ellipsoidLength", false);
        m_map->SetReadout(text);
        Log({{"measured", answer}});
    });
}

// ---- layers ----

void ViewWindow::HideLayers() {
    if (m_link == nullptr) return;
    m_link->Send({{"do", "hide"}, {"layers", m_layers->HiddenLayers()}, {"rules", m_layers->HiddenRules()}});
    m_map->Redraw();
}

// ---- other processes of the program ----

// What of the map draw is to draw, and how: the view, or the sheet of it with its frame.
QStringList ViewWindow::PageOptions(bool sheet) const {
    QStringList options;
    QStringList left = {"--sheet=", "--number=", "--division=", "--rotate=", "--scale="};
    if (!sheet) left << "--margins=";
    for (const QString& option : m_job.options)
        if (std::none_of(left.begin(), left.end(), [&](const QString& one) { return option.startsWith(one); }))
            options << option;
    const Viewport& v = m_map->viewport();
    const double w = v.size.width() * v.pixel / 2, h = v.size.height() * v.pixel / 2;
    const double scale = m_map->symbolScale() > 0.0 ? m_map->symbolScale() : m_map->scale();
    options << QString("--sheet=%1,%2,%3,%4")
                   .arg(v.x - w, 0, 'f', 3)
                   .arg(v.y - h, 0, 'f', 3)
                   .arg(v.x + w, 0, 'f', 3)
                   .arg(v.y + h, 0, 'f', 3)
            << "--scale=" + QString::number(scale, 'f', 3);
    if (v.rotation != 0.0) options << "--rotate=" + QString::number(v.rotation, 'f', 6);
    if (!sheet) options << "--no-frame";
    for (const QString& layer : m_layers->HiddenLayerNames()) options << "--hide-layer=" + layer;
    for (const QJsonValue rule : m_layers->HiddenRules()) options << "--hide-rule=" + QString::number(rule.toInt());
    return options;
}

// The view or sheet by draw. A drawing or recording is drawn whole, by the verb for it.
void ViewWindow::RunDraw(bool sheet, const QStringList& more, const QString& file,
                         const std::function<void()>& written) {
    QStringList arguments;
    if (m_about["drawn"].toBool())
        arguments =
            VerbFor(m_job.inputs.front(), file) + more + QStringList{"--overwrite", "--", m_job.inputs.front(), file};
    else
        arguments = QStringList{"draw"} + PageOptions(sheet) + more + QStringList{"--overwrite", "-o", file, "--"} +
                    m_job.inputs;
    auto* process = new QProcess(this);
    const auto end = [this, process, file, written](int status) {
        const QString words = QString::fromUtf8(process->readAllStandardError()).trimmed();
        process->deleteLater();
        Doing(Say("ready"));
        const bool good = status == 0 || status == 4;
        if (!words.isEmpty()) Note(words);
        Log({{"exported", file}, {"status", status}});
        if (good) return written();
        Note(file + ": status " + QString::number(status));
        ShowError(words.isEmpty() ? file : words);
    };
    connect(process, &QProcess::finished, this, end);
    connect(process, &QProcess::errorOccurred, this, [end](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) end(-1);
    });
    process->start(m_job.program, arguments);
    Doing(Say("drawing") + " " + QFileInfo(file).fileName());
}

void ViewWindow::Export(bool sheet) {
    if (m_about.isEmpty()) return;
    QStringList kinds = {"PDF (*.pdf)", "PNG (*.png)", "SVG (*.svg)"};
    if (!m_about["drawn"].toBool())
        kinds << "DWG (*.dwg)"
              << "DXF (*.dxf)"
              << "REC (*.rec)";
    else
        kinds << (IsDrawing(m_job.inputs.front()) ? "DXF (*.dxf)" : "DWG (*.dwg)");
    QString kind;
    QString file = QFileDialog::getSaveFileName(
        this, Say(sheet ? "Export as a &sheet with frame..." : "&Export the view...").remove('&').remove("..."),
        "map.pdf", kinds.join(";;"), &kind);
    if (file.isEmpty()) return;
    if (QFileInfo(file).suffix().isEmpty()) file += "." + kind.section('.', -1).remove(')');
    RunDraw(sheet, {}, file, [this, file] { Note(file + ": " + Say("written")); });
}

// What is around the map on sheets from now on; the map itself stays as it is.
void ViewWindow::TakeMargins() {
    const QString file = QFileDialog::getOpenFileName(this, Say("Margins of the sheet"), {}, Say("All files") + " (*)");
    if (file.isEmpty()) return;
    m_job.options.removeIf([](const QString& one) { return one.startsWith("--margins="); });
    m_job.options << "--margins=" + file;
    Note(Say("Margins of the sheet") + ": " + file);
}

void ViewWindow::OpenSettings(const QString& which) {
    QStringList arguments{"settings", which, "--json"};
    const bool ofNotes = which == "notes" || which == "fonts";
    for (const QString& option : m_job.options)
        if (option.startsWith("--project=") || (ofNotes && option.startsWith("--notes="))) arguments << option;
    auto* process = new QProcess(this);
    connect(process, &QProcess::finished, this, [this, process](int status, QProcess::ExitStatus) {
        const QJsonObject reported = QJsonDocument::fromJson(process->readAllStandardOutput()).object();
        const QString words = QString::fromUtf8(process->readAllStandardError()).trimmed();
        process->deleteLater();
        if (!words.isEmpty()) Note(words);
        if (status != 0) return ShowError(words.isEmpty() ? "status " + QString::number(status) : words);
        if (!reported["saved"].toBool()) return;
        Note(reported["file"].toString() + ": " + Say("written"));
        m_readAgain = true;
        Start();
    });
    process->start(m_job.program, arguments);
}

}  // namespace zm::view

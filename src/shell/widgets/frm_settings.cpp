#include "shell/widgets/frm_settings.h"

#include "core/host.h"
#include "core/language.h"
#include "core/options.h"
#include "core/regional.h"
#include "core/widgets/number_keys.h"
#include "core/widgets/set_up_form.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/main_entry.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QVBoxLayout>

namespace fm {
namespace {
const int kMemorySizes[] = {4096, 8192, 32768, 65536};

uint32_t *Field(int i) {
    OptionsRecord &o = Options();
    uint32_t *fields[] = {&o.ColorTrace1, &o.ColorTrace2, &o.ColorTrace3, &o.ColorTrace4,
                          &o.ColorBars,   &o.ColorBackTe, &o.ColorBackSt, &o.ColorSoglia};
    return fields[i];
}

} // namespace

frmSettings::frmSettings(QWidget *parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmSettings"));
    DialogFrame(this);
    setWindowTitle(QStringLiteral("Settings"));
    SetTag(this, 4058);
    tabOptions = new QTabWidget(this);
    SetTag(tabOptions, 1);
    SetTabTags(tabOptions, {QStringLiteral("4059"), QStringLiteral("4060"), QStringLiteral("4087"), QStringLiteral("4058")});

    auto *general = Tagged<QGroupBox>(nullptr, "Generali", 4059);
    auto *g = new QGridLayout(general);
    g->addWidget(Tagged<QLabel>(general, "Language", 4068), 0, 0);
    cboLanguage = new QComboBox(general);
    cboLanguage->addItems({QStringLiteral("Italiano"), QStringLiteral("English")});
    g->addWidget(cboLanguage, 0, 1);
    chkConnected = Tagged<QCheckBox>(general, "Parti avviando la connessione", 4069);
    chkWarnOnDate = Tagged<QCheckBox>(general, "Parti avviando la connessione", 4086);
    g->addWidget(chkConnected, 1, 0, 1, 2);
    g->addWidget(chkWarnOnDate, 2, 0, 1, 2);
    auto *onLoad = Tagged<QGroupBox>(general, "Al caricamento dei dati...", 4070);
    auto *ol = new QVBoxLayout(onLoad);
    const char *loads[] = {"Apri l'elenco dei dati", "Visualizza l'andamento", "Visualizza le statistiche"};
    for (int i = 0; i < 3; ++i) ol->addWidget(chkOnLoad[size_t(i)] = Tagged<QCheckBox>(onLoad, loads[i], 4071 + i));
    chkWarnData = Tagged<QCheckBox>(onLoad, "Mostra gli avvertimenti sui dati", 4090);
    ol->addWidget(chkWarnData);
    g->addWidget(onLoad, 3, 0, 1, 2);
    g->setRowStretch(4, 1);

    auto *colours = Tagged<QGroupBox>(nullptr, "Colori Grafici", 4061);
    auto *c = new QGridLayout(colours);
    const char *names[] = {"Colore Traccia 1", "Colore Traccia 2", "Colore Traccia 3", "Colore Traccia 4",
                           "Colore Barrre Statistiche", "Colore Fondo Grafico TE", "Colore Fondo Grafico ST"};
    const int tags[] = {4062, 4063, 4064, 4065, 4078, 4066, 4067};
    for (int i = 0; i < 8; ++i) {
        pctColor[size_t(i)] = new QPushButton(this);
        pctColor[size_t(i)]->setFixedSize(36, 20);
        connect(pctColor[size_t(i)], &QPushButton::clicked, this, [this, i] { ShowColor(i); });
    }
    for (int i = 0; i < 7; ++i) {
        c->addWidget(pctColor[size_t(i)], i, 0);
        c->addWidget(Tagged<QLabel>(colours, names[i], tags[i]), i, 1);
    }
    c->setColumnStretch(1, 1);

    auto *thresholds = Tagged<QGroupBox>(nullptr, "Soglie", 4087);
    auto *t = new QGridLayout(thresholds);
    const char *soglie[] = {"Soglia di qualità (0,2uT)", "Soglia di attenzione (0,5uT)", "Soglia Massima (100uT)",
                            "Custom threshold"};
    for (int i = 0; i < 4; ++i) {
        t->addWidget(optSoglia[size_t(i)] = Tagged<QRadioButton>(thresholds, soglie[i], 4150 + i), i, 0, 1, 3);
        connect(optSoglia[size_t(i)], &QRadioButton::toggled, this, [this] { txtSoglia->setEnabled(optSoglia[3]->isChecked()); });
    }
    txtSoglia = new QLineEdit(thresholds);
    txtSoglia->setObjectName(QStringLiteral("txtSoglia"));
    InstallNumberKeys(txtSoglia);
    connect(txtSoglia, &QLineEdit::editingFinished, this, &frmSettings::LeaveSoglia);
    t->addWidget(txtSoglia, 4, 1);
    t->addWidget(new QLabel(QStringLiteral("(µT)"), thresholds), 4, 2);
    t->addWidget(pctColor[7], 5, 0);
    t->addWidget(Tagged<QLabel>(thresholds, "Colore Fondo Grafico ST", 4154), 5, 1, 1, 2);
    t->setRowStretch(6, 1);

    auto *memory = Tagged<QGroupBox>(nullptr, "Impostazioni", 4058);
    auto *m = new QVBoxLayout(memory);
    m->addWidget(new QLabel(QStringLiteral("Dimensione della memoria a bordo dell'QL540"), memory));
    cboMemorySize = new QComboBox(memory);
    const char *sizes[] = {"32Kbit", "64Kbit", "256Kbit", "512Kbit"};
    for (int i = 0; i < 4; ++i) cboMemorySize->addItem(QLatin1String(sizes[i]), kMemorySizes[i]);
    m->addWidget(cboMemorySize);
    m->addWidget(Tagged<QLabel>(memory, "Label4", 4209));
    m->addStretch();

    tabOptions->addTab(general, QStringLiteral("Generali"));
    tabOptions->addTab(colours, QStringLiteral("Colori"));
    tabOptions->addTab(thresholds, QStringLiteral("Soglie"));
    tabOptions->addTab(memory, QStringLiteral("Impostazioni"));
    btnOk = Tagged<QPushButton>(this, "Ok", 4001);
    btnCancel = Tagged<QPushButton>(this, "Cancel", 4057);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(btnOk);
    buttons->addWidget(btnCancel);
    auto *lay = new QVBoxLayout(this);
    lay->addWidget(tabOptions);
    lay->addLayout(buttons);
    connect(btnOk, &QPushButton::clicked, this, &frmSettings::btnOk_Click);
    connect(btnCancel, &QPushButton::clicked, this, &QDialog::reject);
    SetUpForm(this);

    const OptionsRecord &o = Options();
    cboLanguage->setCurrentIndex(o.Language < 2 ? o.Language : -1);
    chkConnected->setChecked(o.ConnectOnStart);
    chkWarnOnDate->setChecked(o.WarnOnDate);
    chkOnLoad[0]->setChecked(o.OpenSource);
    chkOnLoad[1]->setChecked(o.OpenGraphTe);
    chkOnLoad[2]->setChecked(o.OpenGraphSt);
    chkWarnData->setChecked(o.ShowWarnings);
    for (int i = 0; i < 8; ++i) {
        colors[size_t(i)] = *Field(i);
        ShowColor(-1 - i);
    }
    const float presets[] = {0.2f, 0.5f, 100.0f};
    int option = 3;
    for (int i = 0; i < 3 && option == 3; ++i)
        if (o.Soglia == presets[i]) option = i;
    optSoglia[size_t(option)]->setChecked(true);
    txtSoglia->setEnabled(option == 3);
    if (option == 3) txtSoglia->setText(Str(o.Soglia));
    cboMemorySize->setCurrentIndex(cboMemorySize->findData(o.MemorySize));
}

// i >= 0: the square was clicked; -1 - i: only repaint square i.
void frmSettings::ShowColor(int i) {
    const int k = i < 0 ? -1 - i : i;
    if (i >= 0) {
        CommonDialog local;
        CommonDialog &dlg = MainForm() ? MainForm()->dlgFile : local;
        dlg.Flags = 1;
        dlg.CancelError = true;
        // The dialog is shared with the file commands: it must not keep their title.
        const int captions[] = {4062, 4063, 4064, 4065, 4078, 4066, 4067, 4154};
        dlg.DialogTitle = ResString(3060) + QStringLiteral(": ") + ResString(captions[k]);
        dlg.Color = colors[size_t(k)];
        if (!dlg.ShowColor(this)) return;
        colors[size_t(k)] = dlg.Color;
    }
    const uint32_t v = colors[size_t(k)];
    pctColor[size_t(k)]->setStyleSheet(
        QStringLiteral("background:#%1%2%3; border:1px solid #555")
            .arg(v & 0xFF, 2, 16, QLatin1Char('0')).arg((v >> 8) & 0xFF, 2, 16, QLatin1Char('0'))
            .arg((v >> 16) & 0xFF, 2, 16, QLatin1Char('0')));
}

void frmSettings::LeaveSoglia() {
    const double v = Val(txtSoglia->text());
    if (v < 0) txtSoglia->setText(QStringLiteral("0"));
    else if (v > 200) txtSoglia->setText(QStringLiteral("200"));
}

void frmSettings::btnOk_Click() {
    OptionsRecord &o = Options();
    const bool languageChanged = cboLanguage->currentIndex() != o.Language;
    o.Language = uint8_t(qMax(0, cboLanguage->currentIndex()));
    o.ConnectOnStart = chkConnected->isChecked();
    o.OpenSource = chkOnLoad[0]->isChecked();
    o.OpenGraphTe = chkOnLoad[1]->isChecked();
    o.OpenGraphSt = chkOnLoad[2]->isChecked();
    o.ShowWarnings = chkWarnData->isChecked();
    o.WarnOnDate = chkWarnOnDate->isChecked();
    for (int i = 0; i < 8; ++i) *Field(i) = colors[size_t(i)];
    const float presets[] = {0.2f, 0.5f, 100.0f};
    o.Soglia = 0;
    for (int i = 0; i < 3; ++i)
        if (optSoglia[size_t(i)]->isChecked()) o.Soglia = presets[i];
    if (optSoglia[3]->isChecked()) o.Soglia = float(Val(txtSoglia->text()));
    if (cboMemorySize->currentIndex() >= 0) o.MemorySize = cboMemorySize->currentData().toInt();
    if (languageChanged && Host().MessBox(ResString(29), {}, 1, 0)) {
        ShutDown(this);
        accept();
        QCoreApplication::exit(0);
        return;
    }
    accept();
}
} // namespace fm

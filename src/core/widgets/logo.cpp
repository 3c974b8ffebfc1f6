#include "core/widgets/logo.h"

#include "core/widgets/icons.h"

#include <QHBoxLayout>
#include <QLabel>

namespace fm {

Logo::Logo(int height, QWidget *parent) : QWidget(parent) {
    setObjectName(QStringLiteral("Logo"));
    imgMark = new QLabel(this);
    imgMark->setPixmap(MarkImage(height));
    lblName = new QLabel(this);
    lblName->setObjectName(QStringLiteral("lblName"));
    lblName->setTextFormat(Qt::RichText);
    lblName->setText(QStringLiteral("<span style=\"color:#2b3a4a\">Flux</span>"
                                    "<span style=\"color:#3b7dd8\">mere</span>"));
    QFont f = lblName->font();
    f.setBold(true);
    f.setPixelSize(height / 2);
    lblName->setFont(f);
    // The whole name, whatever the layout around it offers.
    lblName->setMinimumWidth(QFontMetrics(f).horizontalAdvance(QStringLiteral("Fluxmere")) + 4);
    auto *lay = new QHBoxLayout(this);
    lay->setContentsMargins(0, 0, 0, 0);
    lay->addStretch();
    lay->addWidget(imgMark);
    lay->addWidget(lblName);
    lay->addStretch();
}

} // namespace fm

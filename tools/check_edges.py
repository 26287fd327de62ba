#!/usr/bin/env python3
"""Holds the arrows between the folders under src/ to the table below, and Qt's modules to theirs.

Fails with a line for every #include that the table lacks.
"""
import pathlib
import re
import sys

SOURCE = pathlib.Path(__file__).resolve().parent.parent / "src"

# folder: (folders it may include besides itself, Qt modules it may use). The most specific folder counts.
EDGES = {
    "core": ([], []),
    "platform": (["core"], []),
    "platform/freedesktop/files": (["core", "platform"], []),
    "platform/freedesktop": (["core", "platform"], ["Core", "Gui", "DBus", "Network"]),
    "storage": (["core", "platform"], []),
    "services": (["core", "platform"], []),
    "app": (["core", "platform", "storage", "services"], ["Core"]),
    "ui/style": (["core"], ["Core", "Gui", "Widgets", "Svg"]),
    "ui/main": (["core", "storage", "app", "ui"], ["Core", "Gui", "Widgets"]),
    "": (["core", "platform", "platform/freedesktop", "platform/freedesktop/files", "storage", "services", "app", "ui"],
         ["Core", "Gui", "Widgets"]),
}

QT_MODULES = {
    "Core": """QObject QString QStringList QByteArray QByteArrayView QVariant QVariantMap QMap QHash QList QTimer
        QTimeZone QPointer QSocketNotifier QThread QStandardPaths QCryptographicHash QCoreApplication QDateTime QLocale
        QPoint QPointF QRect QRectF QSize QSizeF QMargins QMarginsF QEvent QTimerEvent QVariantAnimation
        QPropertyAnimation QAbstractAnimation QEasingCurve QElapsedTimer QFile QDir QBuffer QRegularExpression
        QMetaType QMetaObject Qt QtGlobal QChar QStringView QLatin1String QSignalBlocker QLine QLineF""",
    "Gui": """QGuiApplication QWindow QPainter QPainterPath QPainterPathStroker QPixmap QPixmapCache QImage QColor
        QPalette QFont QFontDatabase QFontInfo QFontMetrics QFontMetricsF QPen QBrush QIcon QScreen QCursor QKeyEvent
        QMouseEvent QPaintEvent QEnterEvent QFocusEvent QResizeEvent QMoveEvent QCloseEvent QShowEvent QHideEvent
        QWheelEvent QShortcut QKeySequence QAction QAccessible QStyleHints QTransform QPaintDevice QHelpEvent
        QContextMenuEvent QLinearGradient QTextLayout QTextOption QGlyphRun QRegion QPolygonF""",
    "Widgets": """QApplication QWidget QAbstractButton QPushButton QLabel QHBoxLayout QVBoxLayout QBoxLayout
        QGridLayout QLayout QSpacerItem QStyle QStyleOption QStyleFactory QStyleOptionFocusRect QProxyStyle QDialog
        QMessageBox QMenu QStackedWidget QStackedLayout QFrame QScrollArea QSizePolicy QAccessibleWidget QSizeGrip
        QStyleOptionButton QStyleHintReturn QToolTip QCommonStyle QGraphicsOpacityEffect QButtonGroup""",
    "DBus": "QDBus",
    "Network": "QLocalServer QLocalSocket",
    "Svg": "QSvgRenderer",
}


def folder_of(path, names):
    """The longest folder of the table that holds the path."""
    return max((name for name in names if name == "" or path == name or path.startswith(name + "/")), key=len)


def qt_module(header):
    if header.startswith("QDBus"):
        return "DBus"
    for module, headers in QT_MODULES.items():
        if header in headers.split():
            return module
    return None


def faults():
    for file in sorted([*SOURCE.rglob("*.h"), *SOURCE.rglob("*.cpp")]):
        path = file.relative_to(SOURCE)
        place = folder_of(str(path.parent) if str(path.parent) != "." else "", EDGES)
        allowed, modules = EDGES[place]
        for number, line in enumerate(file.read_text(encoding="utf-8").splitlines(), 1):
            project = re.match(r'\s*#\s*include\s+"([^"]+)"', line)
            qt = re.match(r"\s*#\s*include\s+<(?:Qt\w+/)?(Q\w+)>", line)
            where = f"src/{path}:{number}"
            if project and "/" in project[1]:
                target = folder_of(str(pathlib.PurePath(project[1]).parent), EDGES)
                if target != place and target not in allowed and not ("ui" in allowed and target.startswith("ui/")):
                    yield f"{where}: {place or 'src'} may not include {target}"
            if qt:
                module = qt_module(qt[1])
                if module is None:
                    yield f"{where}: unknown Qt header {qt[1]}; add it to QT_MODULES"
                elif module not in modules:
                    yield f"{where}: {place or 'src'} may not use Qt {module}"


if __name__ == "__main__":
    found = list(faults())
    print("\n".join(found) if found else "Every include is in the table.")
    sys.exit(1 if found else 0)

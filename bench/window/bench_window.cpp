// Window start-up until its first paint, beside a bare widget of the same
// size shown until its first paint, both on the offscreen platform.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QWidget>
#include <cstdlib>

#include "window/MainWindow.h"

namespace {

class TFirstPaint : public QObject {
public:
    bool Painted = false;
    bool eventFilter(QObject* watched, QEvent* e) override {
        if (e->type() == QEvent::Paint) Painted = true;
        return QObject::eventFilter(watched, e);
    }
};

template <class Make>
void UntilFirstPaint(benchmark::State& state, Make make) {
    for (auto _ : state) {
        auto w = make();
        TFirstPaint spy;
        w->installEventFilter(&spy);
        w->show();
        while (!spy.Painted) QApplication::processEvents(QEventLoop::AllEvents, 5);
        state.PauseTiming();
        w->removeEventFilter(&spy);
        delete w;
        QApplication::processEvents();
        state.ResumeTiming();
    }
}

void BM_BareWidgetFirstPaint(benchmark::State& state) {
    UntilFirstPaint(state, [] {
        auto* w = new QWidget;
        w->resize(1024, 700);
        return w;
    });
}
BENCHMARK(BM_BareWidgetFirstPaint)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_WindowFirstPaint(benchmark::State& state) {
    UntilFirstPaint(state, [] { return new tessary::TForm1; });
}
BENCHMARK(BM_WindowFirstPaint)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char** argv) {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

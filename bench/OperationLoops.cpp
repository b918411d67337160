// What one operation of a customer's visit leaves behind: each of the kiosk's operations repeated on
// its own (a dialog with one control of each kind made, drawn and deleted, players, a serial chunk, a
// font, a sound board, a scene switch, an input-method composition through the library's window), with
// the private bytes, working set, handles and GDI/USER objects gained per operation after a warm-up.
//   operation_loops [COUNT]       run beside the sample kiosk's files (build/mingw/bin)
#include "BenchSupport.h"
#include "GrowthSupport.h"

#include <imm.h>

#include <cstdio>
#include <functional>
#include <vector>

using namespace ZQ;

namespace {

int g_count = 1000;

struct Loop {
    const char* what;
    std::function<void()> operation;
    int count;
};
std::vector<Loop> g_loops;

void Add(const char* what, std::function<void()> operation, int count = g_count) {
    g_loops.push_back({what, std::move(operation), count});
}

// A frame of one dialog: its move and its drawing, presented.
void Frame(IDirect3DDevice9* device, ZQDialog* dialog) {
    dialog->OnFrameMove(device, 0.0, 0.1f, nullptr);
    device->Clear(0, nullptr, D3DCLEAR_TARGET, 0, 1.0f, 0);
    device->BeginScene();
    dialog->OnFrameRender(device, 0.0, 0.1f, nullptr);
    device->EndScene();
    device->Present(nullptr, nullptr, nullptr, nullptr);
}

// A screen with a dialog made at create and deleted at destroy, as the kiosk's screens are; its edit box
// has the focus. With keepComposition it keeps the input method's composition messages from default
// handling, as a host whose edit box shows the composition does.
class DialogScene : public ZQScene {
public:
    DialogScene(ZQSprite* sprite, ID3DXFont* font) : m_sprite(sprite), m_font(font) {}
    ~DialogScene() override { OnDestroyDevice(nullptr); }
    HRESULT OnCreateDevice(IDirect3DDevice9*, const D3DSURFACE_DESC*, void*) override {
        m_dialog = new ZQDialog(m_sprite, nullptr, nullptr);
        ZQRect box(100.0f, 100.0f, 500.0f, 140.0f);
        D3DXCOLOR white(1.0f, 1.0f, 1.0f, 1.0f);
        m_dialog->AddEditBox(1, m_font, box, white, DT_LEFT);
        return S_OK;
    }
    void OnDestroyDevice(void*) override {
        delete m_dialog;
        m_dialog = nullptr;
    }
    LRESULT OnMsgProc(HWND hWnd, UINT msg, WPARAM wParam, LPARAM lParam, bool* noFurtherProcessing,
                      void* context) override {
        if (m_dialog)
            m_dialog->OnMsgProc(hWnd, msg, wParam, lParam, noFurtherProcessing, context);
        if (keepComposition &&
            (msg == WM_IME_STARTCOMPOSITION || msg == WM_IME_COMPOSITION || msg == WM_IME_ENDCOMPOSITION))
            *noFurtherProcessing = true;
        return msg;
    }
    bool keepComposition = false;

private:
    ZQSprite* m_sprite;
    ID3DXFont* m_font;
    ZQDialog* m_dialog = nullptr;
};

void Compose(HWND window) {
    static const wchar_t kComposed[] = L"さくら";
    HIMC context = ImmGetContext(window);
    ImmSetOpenStatus(context, TRUE);
    ImmSetConversionStatus(context, IME_CMODE_NATIVE, IME_SMODE_NONE);
    ImmSetCompositionStringW(context, SCS_SETSTR, const_cast<wchar_t*>(kComposed),
                             sizeof kComposed - sizeof kComposed[0], nullptr, 0);
    ImmNotifyIME(context, NI_COMPOSITIONSTR, CPS_COMPLETE, 0);
    ImmSetConversionStatus(context, IME_CMODE_ALPHANUMERIC, IME_SMODE_NONE);
    ImmSetOpenStatus(context, FALSE);
    ImmReleaseContext(window, context);
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

} // namespace

int wmain(int argc, wchar_t** argv) {
    bench::App app(argc, argv, 0, 1000, "operation_loops [COUNT]");
    g_count = app.count;
    IDirect3DDevice9* device = app.GetDevice();
    ZQSprite sprite(device);
    sprite.Entry(L"kiosk.te");
    ZQAnimate animate(&sprite);
    animate.Entry(L"kiosk.am");
    ZQSound sound(app.GethWnd(), DSSCL_PRIORITY);
    sound.Entry(L"Click", L"click.wav");
    ZQFont fonts(device);
    fonts.Entry(1, L"DejaVuSans.ttf", L"DejaVu Sans", 18, 9, FW_NORMAL, 1, FALSE, DEFAULT_CHARSET, 0,
                ANTIALIASED_QUALITY, 0);
    ID3DXFont* font = fonts.Get(1);
    if (!sprite.Trans(L"coin") || !font) {
        std::printf("run beside the sample kiosk's files (kiosk.te, kiosk.am, click.wav, DejaVuSans.ttf)\n");
        return 1;
    }

    ZQRect text(100.0f, 80.0f, 540.0f, 110.0f), track(560.0f, 340.0f, 560.0f, 180.0f);
    D3DXCOLOR white(1.0f, 1.0f, 1.0f, 1.0f);
    D3DXVECTOR3 at(320.0f, 250.0f, 0.0f), frame(162.0f, 396.0f, 0.0f);
    // A dialog with what add() puts in it, one frame drawn, deleted.
    auto dialogWith = [&](auto add) {
        return [&, add] {
            ZQDialog dialog(&sprite, &sound, nullptr);
            add(dialog);
            Frame(device, &dialog);
        };
    };

    std::printf("each operation repeated COUNT times after COUNT / 2 to warm up (and a first pass of all):\n"
                "bytes gained per operation, handles and objects gained in all\n");
    bench::PrintGrowthHeader();
    Add("dialog, empty", dialogWith([](ZQDialog&) {}));
    Add("dialog with a static", dialogWith([&](ZQDialog& d) { d.AddStatic(1, font, L"Hello", text, white, 0); }));
    Add("dialog with an edit box", dialogWith([&](ZQDialog& d) { d.AddEditBox(1, font, text, white, 0); }));
    Add("dialog with a list box of 40 lines", dialogWith([&](ZQDialog& d) {
            d.AddListBox(1, font, text);
            for (int i = 0; i < 40; ++i)
                d.GetListBox(1)->SetText(L"Coin accepted", white);
        }));
    Add("dialog with a button", dialogWith([&](ZQDialog& d) {
            d.AddButton(1, L"coin", L"coin", L"star", L"coin", at, true);
            d.GetButton(1)->SetSound(L"Click", nullptr);
        }));
    Add("dialog with a check box",
        dialogWith([&](ZQDialog& d) { d.AddCheckBox(1, L"coin", L"star", L"coin", L"coin", at, false); }));
    Add("dialog with a radio group of two", dialogWith([&](ZQDialog& d) {
            d.AddRadioButton(1, 1, L"arrow", L"star", L"arrow", L"arrow", at, true, false);
            d.AddRadioButton(2, 1, L"arrow", L"star", L"arrow", L"arrow", at, false, false);
        }));
    Add("dialog with a number", dialogWith([&](ZQDialog& d) { d.AddNumber(1, L"digit", at, 4.0f, DT_CENTER); }));
    Add("dialog with a gauge and a time gauge", dialogWith([&](ZQDialog& d) {
            d.AddGauge(1, L"marker", L"track_up", track, 8.0f);
            d.AddTimeGauge(2, L"marker", L"track_up", track, 3.0f);
        }));
    Add("dialog with a time bar and a progress bar", dialogWith([&](ZQDialog& d) {
            d.AddTimeBar(1, L"bar", L"barframe", at, frame, 3.0f, 1);
            d.AddProgress(2, L"bar", at, 10.0f, 1);
        }));
    Add("players: a single and a multi of five", [&] {
        ZQRenderSingle single(&animate);
        single.Entry(L"coin_spin", at, true, -1, false);
        ZQRenderMulti multi(&animate);
        for (int i = 0; i < 5; ++i)
            multi.Entry(L"sparkle", at, true, 1);
    });
    ZQSQUEUE queue;
    Add("serial chunk queued and taken", [&] {
        unsigned char chunk[ZQSQUEUE::kChunkCapacity] = {'C'};
        queue.push(chunk, 1);
        queue.pop(chunk);
    });
    Add("font made and deleted", [&] {
        ZQFont own(device);
        own.Entry(1, L"DejaVuSans.ttf", L"DejaVu Sans", 18, 9, FW_NORMAL, 1, FALSE, DEFAULT_CHARSET, 0,
                  ANTIALIASED_QUALITY, 0);
    });
    Add("click played", [&] { sound.Play(L"Click", true, 0, 0); });
    Add(
        "sound board with a wave, made and deleted",
        [&] {
            ZQSound own(app.GethWnd(), DSSCL_PRIORITY);
            own.Entry(L"Click", L"click.wav");
        },
        g_count / 4 > 0 ? g_count / 4 : 1);

    // Two screens, each with a dialog and an edit box, switched as the main loop switches them.
    auto* first = new DialogScene(&sprite, font);
    auto* second = new DialogScene(&sprite, font);
    app.Entry(L"First", first);
    app.Entry(L"Second", second);
    D3DSURFACE_DESC backBuffer = {};
    backBuffer.Width = 640;
    backBuffer.Height = 480;
    Add("scene switch there and back", [&] {
        app.Trans(L"First");
        app.Dispatcher(device, &backBuffer, nullptr);
        app.Trans(L"Second");
        app.Dispatcher(device, &backBuffer, nullptr);
    });
    Add("composition, default handling", [&] {
        second->keepComposition = false;
        Compose(app.GethWnd());
    });
    Add("composition, kept from default handling", [&] {
        second->keepComposition = true;
        Compose(app.GethWnd());
    });

    // A pass of every loop first: what the allocators under the device take once (Mesa's texture
    // memory settles over the first few thousand text targets) is not put down to whichever loop
    // happened to come first.
    for (Loop& loop : g_loops)
        for (int i = 0; i < loop.count / 2; ++i)
            loop.operation();
    for (Loop& loop : g_loops)
        bench::MeasureGrowth(loop.what, loop.count, loop.operation);
    return 0;
}

// Recorded sessions of the settings dialogs: what a user does, and what must have come of it after each step. A session
// can be played on the logic itself or through the controls of a window; a Hand is the difference.
#pragma once

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/test_host.h"
#include "tests/vector_runner/registry.h"
#include "tests/vector_runner/scenes.h"
#include "zenromath/dialog_view.h"

namespace zm::vectors {

/// What a user does and sees. Texts are GBK; rows of tables have tabs between their cells.
class Hand {
 public:
    virtual ~Hand() = default;
    virtual bool IsOpen() const = 0;
    virtual void Type(int id, const std::string& text) = 0;
    virtual void Check(int id, bool on) = 0;
    virtual void Select(int id, int row) = 0;
    virtual void Click(int id, int row) = 0;
    virtual void Focus(int id, int row) = 0;
    virtual void Press(int id) = 0;
    virtual void Escape() = 0;
    virtual void Enter() = 0;

    virtual std::string Title() const = 0;
    virtual std::string Label(int id) const = 0;
    virtual std::string Edit(int id) const = 0;
    virtual bool IsChecked(int id) const = 0;
    virtual bool IsVisible(int id) const = 0;
    virtual std::vector<std::string> Rows(int id) const = 0;
    virtual int Selected(int id) const = 0;
    virtual int Focused(int id) const = 0;
    virtual std::vector<std::pair<std::string, int>> Columns(int id) const = 0;
    /// Red, green, blue.
    virtual std::array<int, 3> Sample() const = 0;
    /// The row that was made visible by the last step; empty where this cannot be seen.
    virtual std::optional<int> Revealed(int) const { return {}; }
};

/// Plays on the fields of the dialog: the rules of the platform's controls are those of its list boxes and edits.
class LogicHand : public Hand {
 public:
    explicit LogicHand(dialogs::Dialog& dialog) : m_dialog(dialog) { dialog.Open(); }
    bool IsOpen() const override { return !m_dialog.result; }
    void Type(int id, const std::string& text) override;
    void Check(int id, bool on) override { m_dialog.field(id).checked = on; }
    void Select(int id, int row) override;
    void Click(int id, int row) override;
    void Focus(int id, int row) override { m_dialog.field(id).rows.focused = row; }
    void Press(int id) override;
    void Escape() override { Press(2); }
    void Enter() override { Press(1); }

    std::string Title() const override { return m_dialog.Title(); }
    std::string Label(int id) const override { return m_dialog.field(id).text; }
    std::string Edit(int id) const override { return m_dialog.field(id).text; }
    bool IsChecked(int id) const override { return m_dialog.field(id).checked; }
    bool IsVisible(int id) const override { return m_dialog.field(id).visible; }
    std::vector<std::string> Rows(int id) const override;
    int Selected(int id) const override { return m_dialog.field(id).rows.selected; }
    int Focused(int id) const override { return m_dialog.field(id).rows.focused; }
    std::vector<std::pair<std::string, int>> Columns(int id) const override;
    std::array<int, 3> Sample() const override;
    std::optional<int> Revealed(int id) const override;

 private:
    const dialogs::Control& ControlOf(int id) const;

    dialogs::Dialog& m_dialog;
};

/// Plays one recorded session.
class Session {
 public:
    /// What shows the dialog: must call play with a hand on it while it stands open; false if it shows nothing.
    using Stage = std::function<bool(dialogs::Dialog&, const std::function<void(Hand&)>& play)>;

    explicit Session(const Json& record);
    ~Session();
    Outcome Play(const Stage& stage);

    /// On the logic itself.
    static bool OnLogic(dialogs::Dialog& dialog, const std::function<void(Hand&)>& play);
    static bool IsSession(const Json& record);

 private:
    class SessionHost;

    const Json& Step() const { return m_record.at("steps").at(m_step); }
    void RunStep();
    void CallEntry();
    void PlayOpen(Hand& hand);
    void Do(Hand& hand);
    void BeginStep();
    void CompareEvents(const Json& then);
    void CompareView(Hand& hand, const Json& then);
    void CompareCalls();
    void CompareFiles(const Json& then);
    std::map<std::string, std::string> Files() const;
    [[noreturn]] void Fail(const std::string& what, const Json& expected, const Json& found) const;
    void Expect(const std::string& what, const Json& expected, const Json& found) const;
    void Learn(const Json& then);
    void CompareKnown(Hand& hand) const;

    const Json& m_record;
    Scene m_scene;
    std::unique_ptr<SessionHost> m_host;
    std::size_t m_step = 0;
    std::map<std::string, std::string> m_files;  // content before the step
    Json m_known;                                // what must stand in the dialog: kind, id, value
};

}  // namespace zm::vectors

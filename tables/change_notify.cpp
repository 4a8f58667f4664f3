// Notifications of changed rows.
#include "tables/change_notify.h"

#include <array>
#include <optional>

#include "daemon/base/reply.h"

namespace kobd
{
namespace
{
// Gathers items until no more fit, then sends them. Every name comes from the dictionary, so that
// a table name, a row index and one column name always fit together.
class Announcement
{
public:
    void TableName(std::string_view name)
    {
        table_ = name;
        index_.reset();
    }

    void RowIndex(int32_t index)
    {
        index_ = index;
        if (PushRow()) return;
        Send();
        PushRow();
    }

    void ColumnName(std::string_view name)
    {
        if (items_.Text(kTagColumnName, name)) return;
        Send();
        if (PushRow() && items_.Text(kTagColumnName, name)) return;
    }

    // Sends what is left; a table name that no index followed is told too.
    void Finish()
    {
        if (!table_.empty() && !index_ && !items_.Text(kTagTableName, table_))
        {
            Send();
            if (!items_.Text(kTagTableName, table_)) return;
        }
        Send();
    }

private:
    bool PushRow()
    {
        const size_t before = items_.Size();
        if (items_.Text(kTagTableName, table_) && items_.Int(kTagRowIndex, *index_)) return true;
        items_.Truncate(before);
        return false;
    }

    void Send()
    {
        KobdNotify(kEventTableChanged, std::span(payload_).first(items_.Size()));
        items_.Truncate(0);
    }

    std::array<char, kNotifyPayloadMax> payload_;
    TlvWriter items_{payload_};
    std::string_view table_;  // in the echo
    std::optional<int32_t> index_;
};
}  // namespace

void TableChangeNotify(std::span<const char> echo)
{
    Announcement announcement;
    TlvReader reader(echo);
    while (const auto item = reader.Next()) switch (item->tag)
        {
            case kTagTableName: announcement.TableName(*item->Text()); break;
            case kTagRowIndex: announcement.RowIndex(*item->Int()); break;
            default: announcement.ColumnName(*item->Text()); break;
        }
    announcement.Finish();
}
}  // namespace kobd

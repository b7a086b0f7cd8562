#pragma once

/// The columns of a group's grid.
namespace nsFormColumns {

enum
{
    Labels,
    Controls,
    Hints ///< empty in most groups, and then without width: nothing reaches into it
};

} // namespace nsFormColumns

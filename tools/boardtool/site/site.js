// The catalog site's one script: the search box that filters the list of
// boards as one types, and the column headings that sort a table. The pages
// read well without it; it fetches nothing.
(function () {
  "use strict";

  function rowsOf(table) {
    return Array.prototype.slice.call(table.tBodies[0].rows);
  }

  // Every word typed must occur in the row's search text, in any order.
  function filter(input, table, counter) {
    var words = input.value.toLowerCase().split(/\s+/).filter(Boolean);
    var shown = 0;
    rowsOf(table).forEach(function (row) {
      var text = row.getAttribute("data-search") || "";
      var match = words.every(function (w) { return text.indexOf(w) >= 0; });
      row.hidden = !match;
      if (match) shown++;
    });
    if (counter) {
      var total = table.tBodies[0].rows.length;
      counter.textContent = shown === total ? total + (total === 1 ? " board" : " boards")
                                            : shown + " of " + total + " boards";
    }
  }

  function cellKey(row, column, numeric) {
    var cell = row.cells[column];
    var key = cell ? (cell.getAttribute("data-key") || cell.textContent) : "";
    if (numeric) {
      var n = parseFloat(key);
      return isNaN(n) ? -Infinity : n;
    }
    return key.trim().toLowerCase();
  }

  function sortBy(table, th) {
    var column = th.cellIndex;
    var numeric = th.classList.contains("num");
    var ascending = th.getAttribute("aria-sort") !== "ascending";
    Array.prototype.forEach.call(th.parentNode.cells, function (other) {
      other.removeAttribute("aria-sort");
    });
    th.setAttribute("aria-sort", ascending ? "ascending" : "descending");
    var rows = rowsOf(table);
    rows.sort(function (a, b) {
      var x = cellKey(a, column, numeric), y = cellKey(b, column, numeric);
      var order = x < y ? -1 : x > y ? 1 : 0;
      return ascending ? order : -order;
    });
    var body = table.tBodies[0];
    rows.forEach(function (row) { body.appendChild(row); });
  }

  document.addEventListener("DOMContentLoaded", function () {
    Array.prototype.forEach.call(document.querySelectorAll("table.sortable"), function (table) {
      Array.prototype.forEach.call(table.tHead.rows[0].cells, function (th) {
        var button = document.createElement("button");
        button.type = "button";
        while (th.firstChild) button.appendChild(th.firstChild);
        th.appendChild(button);
        button.addEventListener("click", function () { sortBy(table, th); });
      });
    });
    var input = document.getElementById("search");
    var table = document.getElementById("boards");
    if (input && table) {
      var counter = document.getElementById("count");
      input.addEventListener("input", function () { filter(input, table, counter); });
      filter(input, table, counter);
    }
  });
})();

// Tables of files in a report's page, sorted by any column. The rows are text written by the tool; only those near the
// window are built. So sorting and scrolling take about the same time for a hundred and for 200,000 rows.
(function () {
  "use strict";

  const CHUNK = 200;  // rows built at a time
  const NAME = 0, KIND = 1, SIZE = 2, CHANGED = 3;
  const TITLES = ["Name", "Kind", "Size", "Changed", "CRC-32"];
  const collator = new Intl.Collator();

  const order = { column: NAME, descending: false };
  const report = window.report = { order: order, onSort: null };

  function element(name, className, parent) {
    const made = document.createElement(name);
    if (className) made.className = className;
    if (parent) parent.append(made);
    return made;
  }

  function textOf(html) {
    if (!html.includes("&")) return html;
    const area = document.createElement("textarea");
    area.innerHTML = html;
    return area.value;
  }

  report.element = element;

  // ---- Rows are the HTML that the tool wrote: <tr><td><a href="...">name</a><td>kind<td data-v=1>size<td data-v=2>date<td>crc

  function cut(row, start, end, from) {
    const begin = row.indexOf(start, from) + start.length;
    return row.slice(begin, row.indexOf(end, begin));
  }

  // In lower case.
  report.nameOf = function (row) { return textOf(cut(row, "\">", "</a>")).toLowerCase(); };

  function keyOf(row, column) {
    if (column === KIND) return cut(row, "</a><td>", "<");
    if (column !== SIZE && column !== CHANGED) return row.slice(row.lastIndexOf("<td>") + 4);
    const value = "<td data-v=", size = row.indexOf(value);  // names have no "<"
    return parseInt(row.slice((column === SIZE ? size : row.indexOf(value, size + 1)) + value.length), 10);
  }

  // Replaces texts by their ranks, since most of them are equal.
  function ranks(keys) {
    const distinct = [...new Set(keys)].sort(collator.compare), rank = new Map(distinct.map((key, i) => [key, i]));
    return keys.map(key => rank.get(key));
  }

  // Returns the places of the rows in the current order; equal ones by name.
  function placesInOrder(rows) {
    const places = Uint32Array.from(rows, (row, i) => i);
    if (order.column === NAME) return order.descending ? places.reverse() : places;
    let keys = rows.map(row => keyOf(row, order.column));
    if (typeof keys[0] === "string") keys = ranks(keys);
    const sign = order.descending ? -1 : 1;
    return places.sort((a, b) => sign * (keys[a] - keys[b]) || a - b);
  }

  // ---- A table of files

  const nearness = new IntersectionObserver(
    entries => entries.forEach(entry => entry.target.chunk.setNear(entry.isIntersecting)), { rootMargin: "1500px 0px" });

  class Chunk {
    constructor(table, begin, end) {
      this.table = table;
      this.begin = begin;
      this.end = end;
      this.body = element("tbody", "", table.element);
      this.body.chunk = this;
      this.isFilled = false;
      if (table.isLong) {
        this.reserve(table.rowHeight * (end - begin));
        nearness.observe(this.body);
      } else {
        this.fill();
      }
    }

    reserve(height) {
      this.isFilled = false;
      this.body.innerHTML = "<tr aria-hidden=\"true\"><td class=\"reserved\">";
      this.body.rows[0].cells[0].style.height = height + "px";
    }

    fill() {
      if (this.isFilled) return;
      this.isFilled = true;
      this.body.innerHTML = Array.from(this.table.places.subarray(this.begin, this.end), this.table.show).join("");
      explainKinds(this.body);
      if (!this.table.isLong) return;
      [...this.body.rows].forEach((row, i) => row.setAttribute("aria-rowindex", this.begin + i + 2));
    }

    setNear(isNear) {
      if (isNear) {
        this.fill();
      } else if (this.isFilled && this.body.isConnected && !document.body.matches(".printing")) {
        const height = this.body.offsetHeight;
        if (!height) return;
        this.table.rowHeight = height / (this.end - this.begin);
        this.reserve(height);
      }
    }
  }

  // A click on a column's title sorts all tables, which report.onSort refills.
  report.FileTable = class {
    // show: the HTML of the row at a place.
    constructor(parent, show) {
      this.show = show;
      this.rowHeight = 33;
      this.element = element("table", "files", parent);
      this.titles = element("tr", "", element("thead", "", this.element));
      TITLES.forEach((title, column) => {
        const button = element("button", "", element("th", "", this.titles));
        button.type = "button";
        button.textContent = title;
        button.addEventListener("click", () => sortBy(column));
      });
      this.chunks = [];
    }

    setRows(rows) {
      const count = rows.length;
      this.places = placesInOrder(rows);
      this.isLong = count > CHUNK;
      this.clear();
      for (let i = 0; i < count; i += CHUNK) this.chunks.push(new Chunk(this, i, Math.min(i + CHUNK, count)));
      if (this.isLong) this.element.setAttribute("aria-rowcount", count + 1);
      else this.element.removeAttribute("aria-rowcount");
      [...this.titles.cells].forEach((cell, column) => {
        if (column === order.column) cell.setAttribute("aria-sort", order.descending ? "descending" : "ascending");
        else cell.removeAttribute("aria-sort");
      });
    }

    clear() {
      this.chunks.forEach(chunk => {
        nearness.unobserve(chunk.body);
        chunk.body.remove();
      });
      this.chunks = [];
    }

    fillAll() { this.chunks.forEach(chunk => chunk.fill()); }
  };

  function sortBy(column) {
    const isAgain = order.column === column;
    order.descending = isAgain ? !order.descending : column === SIZE || column === CHANGED;
    order.column = column;
    report.onSort();
  }

  // The first occurrence of a kind in a chunk gets its explanation from the table of all kinds.
  let explanations = null;

  function explainKinds(body) {
    if (!explanations)
      explanations = new Map([...document.querySelectorAll(".kinds tbody tr")].map(
        row => [row.cells[0].textContent, row.cells[0].innerHTML]));
    const seen = new Set();
    for (const row of body.rows) {
      const cell = row.cells[KIND], kind = cell.textContent;
      if (!seen.has(kind) && explanations.has(kind)) cell.innerHTML = explanations.get(kind);
      seen.add(kind);
    }
  }
})();

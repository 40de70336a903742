// The ground of every chart: size, axes, hints, and the same figures as a table.
import { element, number, svg, texts, timeFormat } from "./core.js";

export const margin = { top: 18, right: 10, bottom: 24, left: 46 };

/** How times are written whose distance is at least so many ms. */
const steps = [
  { least: 28 * 864e5, format: timeFormat({ month: "short", year: "2-digit" }) },
  { least: 864e5, format: timeFormat({ day: "numeric", month: "short" }) },
  { least: 0, format: timeFormat({ hour: "2-digit", minute: "2-digit" }) },
];

/** One chart in its figure. The drawing is an image to a screen reader, described by its label. */
export class Plot {
  constructor(figure, height) {
    this.figure = figure;
    this.place = figure.querySelector(".plot");
    this.height = height;
    this.tip = element("div", { class: "tip", hidden: "" });
    this.rows = () => [];
    this.redraw = () => {};
    const list = element("div", { class: "values", tabindex: "0" });
    this.details = element("details", { class: "data" }, element("summary", {}, texts.asTable), list);
    this.details.addEventListener("toggle", () => this.fillTable());
    figure.append(this.details);
    let width = this.place.clientWidth;
    new ResizeObserver(() => {
      if (Math.abs(this.place.clientWidth - width) > 4) {
        width = this.place.clientWidth;
        this.redraw();
      }
    }).observe(this.place);
  }

  get width() {
    return Math.max(this.place.clientWidth, 240);
  }

  get innerWidth() {
    return this.width - margin.left - margin.right;
  }

  /** Begins a new drawing. */
  begin(label, height = this.height) {
    this.height = height;
    this.drawing = svg("svg", { viewBox: `0 0 ${this.width} ${height}`, width: this.width, height,
      role: "img", "aria-label": label });
    return this.drawing;
  }

  end() {
    this.place.replaceChildren(this.drawing, this.tip);
    this.fillTable();
  }

  empty(text) {
    this.place.replaceChildren(element("p", { class: "quiet" }, text));
  }

  /** Lines across at the ticks of @p scale, its figures, and its unit. */
  leftAxis(scale, unit, ticks = 4) {
    const right = this.width - margin.right;
    const wanted = scale.ticks(ticks);
    // A logarithmic scale names every digit; each power and its half are enough.
    const shown = wanted.length > 8 ? wanted.filter((value) => /^[13]/.test(value.toExponential())) : wanted;
    for (const value of shown) {
      const y = scale(value);
      this.drawing.append(
        svg("line", { class: value === 0 ? "base" : "rule", x1: margin.left, x2: right, y1: y, y2: y }),
        svg("text", { class: "axis", x: margin.left - 6, y: y + 4, "text-anchor": "end" }, number(value)));
    }
    this.drawing.append(svg("text", { class: "axis", x: margin.left - 6, y: 10, "text-anchor": "end" }, unit));
  }

  timeAxis(scale) {
    const ticks = scale.ticks(Math.max(2, Math.floor(this.innerWidth / 90)));
    const step = ticks.length > 1 ? ticks[1] - ticks[0] : 0;
    const { format } = steps.find(({ least }) => step >= least);
    const every = Math.ceil(ticks.length * 72 / this.innerWidth);
    ticks.forEach((tick, i) => this.below(scale(tick), i % every === 0 ? format.format(tick) : ""));
  }

  below(x, text) {
    const y = this.height - margin.bottom;
    this.drawing.append(svg("line", { class: "base", x1: x, x2: x, y1: y, y2: y + 4 }),
      svg("text", { class: "axis", x: Math.min(x, this.width - 18), y: y + 17, "text-anchor": "middle" }, text));
  }

  /** Shows @p lines of a name and a figure beside the point. */
  showTip(x, y, title, lines) {
    this.tip.replaceChildren(element("div", {}, title), element("table", {}, element("tbody", {},
      ...lines.map(([name, value]) => element("tr", {}, element("td", {}, name), element("td", {}, value))))));
    this.tip.hidden = false;
    const width = this.tip.offsetWidth;
    this.tip.style.left = Math.max(0, x + 14 + width > this.width ? x - width - 14 : x + 14) + "px";
    this.tip.style.top = Math.max(0, y - this.tip.offsetHeight / 2) + "px";
  }

  hideTip() {
    this.tip.hidden = true;
  }

  /** The figures as rows, the first of them the titles; built when somebody looks. */
  fillTable() {
    if (!this.details.open) {
      return;
    }
    const [titles, ...rows] = this.rows();
    this.details.querySelector(".values").replaceChildren(element("table", {},
      element("thead", {}, element("tr", {}, ...titles.map((text) => element("th", { scope: "col" }, text)))),
      element("tbody", {}, ...rows.map((row) => element("tr", {}, ...row.map((text) => element("td", {}, text)))))));
  }
}

const around = { wlan: circle, lte: square, "5g": diamond, "3g": up, "2g": down };

/** The path of a mark: each connection has its own form, so that colour is never the only sign. */
export function mark(type, x, y) {
  return (around[type] ?? cross)(x, y);
}

function circle(x, y) {
  return `M${x - 3},${y}a3,3 0 1 0 6,0a3,3 0 1 0 -6,0Z`;
}
function square(x, y) {
  return `M${x - 2.8},${y - 2.8}h5.6v5.6h-5.6Z`;
}
function diamond(x, y) {
  return `M${x},${y - 4}l4,4l-4,4l-4,-4Z`;
}
function up(x, y) {
  return `M${x},${y - 4}l4,7h-8Z`;
}
function down(x, y) {
  return `M${x},${y + 4}l4,-7h-8Z`;
}
function cross(x, y) {
  return `M${x - 3},${y - 1}h2v-2h2v2h2v2h-2v2h-2v-2h-2Z`;
}

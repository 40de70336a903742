// The charts over time: they share their period, their connections and their scale.
import { scaleLinear, scaleLog, scaleUtc } from "d3-scale";
import { api, element, figure, fill, filters, number, sign, svg, texts, timeText, toggle, typeName, unitOf,
  whenSeen } from "./core.js";
import { margin, mark, Plot } from "./plot.js";

const height = 215;
const leastSpan = 60_000; // ms
const pause = 140; // ms until the service is asked, while somebody still moves

/** All charts of one page. */
export class TimeCharts {
  constructor(section) {
    this.section = section;
    this.hidden = new Set();
    this.logarithmic = false;
    this.view = null; // [from, to], null for all
    this.whole = null;
    this.charts = [...section.querySelectorAll("[data-chart=time]")].map((place) => new TimeChart(place, this));
    this.legend = element("span", { class: "tools" });
    section.querySelector(".tools").append(
      this.button("−", texts.zoomOut, () => this.zoom(2)), this.button("+", texts.zoomIn, () => this.zoom(0.5)),
      this.button("◂", texts.earlier, () => this.pan(-0.4)), this.button("▸", texts.later, () => this.pan(0.4)),
      this.button(texts.whole, texts.whole, () => this.show(null)),
      toggle([texts.logarithmic], false, (on) => {
        this.logarithmic = on;
        this.redraw();
      }), this.legend);
    section.addEventListener("keydown", (event) => this.key(event));
  }

  button(text, label, click) {
    return element("button", { type: "button", class: "tool", "aria-label": label, title: label, click }, text);
  }

  key(event) {
    const actions = { "+": () => this.zoom(0.5), "-": () => this.zoom(2), "0": () => this.show(null),
      ArrowLeft: () => this.pan(-0.2), ArrowRight: () => this.pan(0.2) };
    if (actions[event.key] && !event.ctrlKey && !event.altKey && !event.metaKey) {
      event.preventDefault();
      actions[event.key]();
    }
  }

  get period() {
    return this.view ?? this.whole ?? [0, 1];
  }

  /** Shows @p period; all of it for null. */
  show(period) {
    if (period && this.whole) {
      const length = Math.min(Math.max(period[1] - period[0], leastSpan), this.whole[1] - this.whole[0]);
      const from = Math.min(Math.max(period[0], this.whole[0]), this.whole[1] - length);
      this.view = length >= this.whole[1] - this.whole[0] ? null : [from, from + length];
    } else {
      this.view = null;
    }
    this.section.dataset.period = this.view ? this.view.map(Math.round).join("-") : "";
    this.redraw();
    clearTimeout(this.waiting);
    this.waiting = setTimeout(() => this.charts.forEach((chart) => chart.load()), pause);
  }

  zoom(factor, middle = (this.period[0] + this.period[1]) / 2) {
    const [from, to] = this.period;
    this.show([middle - (middle - from) * factor, middle + (to - middle) * factor]);
  }

  pan(part) {
    const [from, to] = this.period;
    this.show([from + (to - from) * part, to + (to - from) * part]);
  }

  /** Buttons for the connections that there are. */
  offer(types) {
    for (const type of types) {
      if (!this.legend.querySelector(`[data-type="${type}"]`)) {
        const button = toggle([sign(type), typeName(type)], true, (on) => {
          on ? this.hidden.delete(type) : this.hidden.add(type);
          this.redraw();
        });
        button.dataset.type = type;
        this.legend.append(button);
      }
    }
  }

  redraw() {
    this.charts.forEach((chart) => chart.draw());
  }
}

class TimeChart {
  constructor(place, charts) {
    this.charts = charts;
    this.metric = place.dataset.metric;
    this.series = null;
    this.asked = 0;
    this.plot = new Plot(place, height);
    this.plot.redraw = () => this.draw();
    this.plot.rows = () => this.rows();
    whenSeen(place, () => this.load());
    this.listen();
  }

  async load() {
    const query = filters();
    query.set("metric", this.metric);
    // About one a mark's width: more would hide each other.
    query.set("buckets", String(Math.max(40, Math.min(1000, Math.round(this.plot.innerWidth / 9)))));
    if (this.charts.view) {
      query.set("from", String(Math.floor(this.charts.view[0])));
      query.set("to", String(Math.ceil(this.charts.view[1])));
    }
    const mine = ++this.asked;
    try {
      const answer = await api("buckets", query);
      if (mine !== this.asked) {
        return;
      }
      this.series = answer.series;
      this.charts.whole ??= [answer.from_ms, Math.max(answer.to_ms, answer.from_ms + leastSpan)];
      this.charts.offer(answer.series.map((each) => each.type));
      this.draw();
    } catch (problem) {
      this.plot.empty(problem.message);
    }
  }

  get shown() {
    return (this.series ?? []).filter((each) => !this.charts.hidden.has(each.type));
  }

  draw() {
    if (!this.series) {
      return;
    }
    const [from, to] = this.charts.period;
    const inside = this.shown.map((each) => ({ type: each.type,
      points: each.points.filter((point) => point.time_ms >= from && point.time_ms <= to) }));
    const points = inside.flatMap((each) => each.points);
    const greatest = points.length > 0 ? Math.max(...points.map((point) => point.max)) : 1;
    const least = points.length > 0 ? Math.min(...points.map((point) => point.min)) : 1;
    const unit = unitOf(this.metric, greatest);
    const area = [height - margin.bottom, margin.top];
    const x = scaleUtc().domain([from, to]).range([margin.left, this.plot.width - margin.right]);
    const y = this.charts.logarithmic
      ? scaleLog().domain([least / unit.divisor, greatest / unit.divisor]).range(area).nice()
      : scaleLinear().domain([0, greatest / unit.divisor]).range(area).nice(4);
    this.scales = { x, y: (value) => y(value / unit.divisor) };
    const drawing = this.plot.begin(this.label(inside));
    this.plot.leftAxis(y, unit.name);
    this.plot.timeAxis(x);
    for (const each of inside) {
      drawing.append(...this.lines(each));
    }
    this.cursor = svg("line", { class: "cursor", y1: margin.top, y2: area[0], visibility: "hidden" });
    this.band = svg("rect", { class: "drag", y: margin.top, height: area[0] - margin.top, width: 0 });
    drawing.append(this.cursor, this.band);
    this.plot.end();
  }

  /** From least to greatest, through the medians, and a mark at each; a long pause is a gap. */
  lines({ type, points }) {
    const { x, y } = this.scales;
    const gap = (this.charts.period[1] - this.charts.period[0]) / 14;
    const at = points.map((point) => [Math.round(x(point.time_ms) * 10) / 10, Math.round(y(point.median) * 10) / 10]);
    const line = at.map(([u, v], i) =>
      (i > 0 && points[i].time_ms - points[i - 1].time_ms < gap ? "L" : "M") + u + "," + v).join("");
    const ranges = points.map((point, i) => point.count < 2 ? ""
      : `M${at[i][0]},${y(point.min).toFixed(1)}V${y(point.max).toFixed(1)}`).join("");
    return [svg("path", { class: "range c-" + type, d: ranges }), svg("path", { class: "line c-" + type, d: line }),
      svg("path", { class: "c-" + type, d: at.map(([u, v]) => mark(type, u, v)).join("") })];
  }

  label(inside) {
    const parts = inside.filter((each) => each.points.length > 0).map(({ type, points }) => {
      const medians = points.map((point) => point.median).sort((a, b) => a - b);
      return fill(texts.ofType, typeName(type), figure(this.metric, medians[medians.length >> 1]),
        figure(this.metric, Math.min(...points.map((point) => point.min))),
        figure(this.metric, Math.max(...points.map((point) => point.max))));
    });
    const [from, to] = this.charts.period;
    return fill(texts.chartOf, texts[this.metric], timeText(from), timeText(to), parts.join("; ") || texts.empty);
  }

  rows() {
    const rows = this.shown.flatMap(({ type, points }) => points.map((point) => [point.time_ms, timeText(point.time_ms),
      typeName(type), number(point.count), ...[point.min, point.median, point.max].map((v) => figure(this.metric, v))]));
    rows.sort((a, b) => b[0] - a[0]);
    return [[texts.time, texts.connection, texts.tests, texts.least, texts.median, texts.greatest],
      ...rows.map((row) => row.slice(1))];
  }

  /** Dragging selects a period, or moves it with Shift; a wheel with Ctrl zooms. */
  listen() {
    const place = this.plot.place;
    let start = null;
    const within = (event) => {
      const box = place.getBoundingClientRect();
      return Math.min(Math.max(event.clientX - box.left, margin.left), this.plot.width - margin.right);
    };
    place.addEventListener("pointerdown", (event) => {
      if (this.scales && event.button === 0) {
        start = { x: within(event), period: this.charts.period, moves: event.shiftKey };
        place.setPointerCapture(event.pointerId);
      }
    });
    place.addEventListener("pointermove", (event) => {
      const now = within(event);
      if (!start) {
        this.point(event, now);
      } else if (start.moves) {
        const shift = (start.x - now) / this.plot.innerWidth * (start.period[1] - start.period[0]);
        this.charts.show([start.period[0] + shift, start.period[1] + shift]);
      } else {
        this.band.setAttribute("x", String(Math.min(start.x, now)));
        this.band.setAttribute("width", String(Math.abs(now - start.x)));
      }
    });
    place.addEventListener("pointerup", (event) => {
      const now = within(event);
      if (start && !start.moves && Math.abs(now - start.x) > 6) {
        const times = [start.x, now].sort((a, b) => a - b).map((at) => this.scales.x.invert(at).getTime());
        this.charts.show(times);
      }
      start = null;
    });
    place.addEventListener("pointercancel", () => {
      start = null;
      this.band?.setAttribute("width", "0");
    });
    place.addEventListener("pointerleave", () => {
      this.plot.hideTip();
      this.cursor?.setAttribute("visibility", "hidden");
    });
    place.addEventListener("dblclick", () => this.charts.zoom(4));
    place.addEventListener("wheel", (event) => {
      if (event.ctrlKey && this.scales) {
        event.preventDefault();
        this.charts.zoom(event.deltaY > 0 ? 1.4 : 0.7, this.scales.x.invert(within(event)).getTime());
      }
    }, { passive: false });
  }

  /** Names the median nearest to the pointer. */
  point(event, x) {
    if (!this.scales) {
      return;
    }
    const y = event.clientY - this.plot.place.getBoundingClientRect().top;
    let best = null;
    for (const { type, points } of this.shown) {
      for (const point of points) {
        const far = Math.hypot(this.scales.x(point.time_ms) - x, (this.scales.y(point.median) - y) / 3);
        if (far < (best?.far ?? 40)) {
          best = { far, type, point };
        }
      }
    }
    if (!best) {
      return this.plot.hideTip();
    }
    const { type, point } = best;
    const at = this.scales.x(point.time_ms);
    this.cursor.setAttribute("visibility", "visible");
    this.cursor.setAttribute("x1", at);
    this.cursor.setAttribute("x2", at);
    this.plot.showTip(at, this.scales.y(point.median), timeText(point.time_ms) + " · " + typeName(type), [
      [texts.median, figure(this.metric, point.median)], [texts.least, figure(this.metric, point.min)],
      [texts.greatest, figure(this.metric, point.max)], [texts.tests, number(point.count)]]);
  }
}

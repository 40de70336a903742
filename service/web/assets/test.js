// One test: what went through in each tenth of a second, its round trips, and where it was.
import { scaleLinear } from "d3-scale";
import { api, figure, number, svg, texts, unitOf } from "./core.js";
import { manage } from "./manage.js";
import { pathOf } from "./map.js";
import { margin, Plot } from "./plot.js";

const interval = 0.1; // s
const section = document.getElementById("curves");

/**
 * Bars are what one tenth of a second gave, so that a pause is seen as one. The round trips beside the stream, pairs of
 * seconds and ns, are a thin line over them with a scale of its own.
 */
function drawRates(plot, metric, rates, trips) {
  if (rates.length === 0) {
    return plot.empty(texts.empty);
  }
  const unit = unitOf(metric, Math.max(...rates));
  const bottom = plot.height - margin.bottom - 12;
  const seconds = rates.length * interval;
  const x = scaleLinear().domain([0, seconds]).range([margin.left, plot.width - margin.right]);
  const y = scaleLinear().domain([0, Math.max(...rates, 1) / unit.divisor]).range([bottom, margin.top]).nice(4);
  const middle = rates.reduce((sum, rate) => sum + rate, 0) / rates.length;
  const known = trips.map(([, trip]) => trip).filter((trip) => trip !== null);
  const beside = known.length === 0 ? "" : `, ${texts.rtt}: ${texts.least} ${figure("rtt", Math.min(...known))}, ${
    texts.greatest} ${figure("rtt", Math.max(...known))}`;
  const drawing = plot.begin(`${texts[metric]}: ${texts.average} ${figure(metric, middle)}, ${texts.least} ${
    figure(metric, Math.min(...rates))}, ${texts.greatest} ${figure(metric, Math.max(...rates))}${beside}`);
  plot.leftAxis(y, unit.name);
  for (const second of x.ticks(7)) {
    drawing.append(svg("text", { class: "axis", x: x(second), y: bottom + 15, "text-anchor": "middle" }, number(second)));
  }
  drawing.append(svg("text", { class: "axis", x: plot.width / 2, y: bottom + 30, "text-anchor": "middle" }, texts.seconds));
  const steps = rates.map((rate, i) => `L${x(i * interval).toFixed(1)},${y(rate / unit.divisor).toFixed(1)}H${
    x((i + 1) * interval).toFixed(1)}`).join("");
  drawing.append(svg("path", { class: "area c-" + metric, d: `M${x(0)},${bottom}${steps}V${bottom}Z` }),
    svg("path", { class: "curve c-" + metric, d: "M" + steps.slice(1) }));
  if (known.length > 0) {
    const height = scaleLinear().domain([0, Math.max(...known) / 1e6]).range([bottom, margin.top]).nice(2);
    let path = "";
    trips.forEach(([second, trip], i) => {
      if (trip !== null) {
        path += `${(trips[i - 1]?.[1] ?? null) === null ? "M" : "L"}${x(second).toFixed(1)},${height(trip / 1e6).toFixed(1)}`;
      }
    });
    drawing.append(svg("path", { class: "curve thin c-rtt", d: path }),
      svg("text", { class: "axis of-rtt", x: plot.width - margin.right, y: 10, "text-anchor": "end" },
        `${texts.rtt} 0 – ${number(height.domain()[1])} ms`));
  }
  plot.end();
}

/** The round trips beside a stream that took @p seconds. */
function tripsOf(load, seconds) {
  const times = load?.times_ns ?? [];
  const found = (load?.samples_ns ?? []).map((trip, i) => [times[i] / 1e9, trip]);
  return found.filter(([second]) => second >= 0 && second <= seconds);
}

/** Each sample as a bar of its own. */
function drawSamples(plot, names, samples) {
  const known = samples.filter((value) => value !== null);
  if (known.length === 0) {
    return plot.empty(texts.empty);
  }
  const y = scaleLinear().domain([0, Math.max(...known) / 1e6]).range([plot.height - margin.bottom, margin.top]).nice(4);
  const drawing = plot.begin(texts.rtt + ": " + samples.map((value, i) => names[i] + " " + figure("rtt", value)).join(", "));
  plot.leftAxis(y, "ms");
  const width = plot.innerWidth / samples.length;
  samples.forEach((value, i) => {
    const left = margin.left + i * width;
    plot.below(left + width / 2, names[i]);
    if (value !== null) {
      drawing.append(svg("rect", { class: "box c-rtt", x: left + width / 2 - Math.min(width * 0.3, 30), y: y(value / 1e6),
        width: Math.min(width * 0.6, 60), height: plot.height - margin.bottom - y(value / 1e6), rx: 3 }));
    }
  });
  plot.end();
}

function show(metric, height, rows, draw) {
  const plot = new Plot(section.querySelector(`[data-metric=${metric}]`), height);
  plot.rows = () => rows;
  plot.redraw = () => draw(plot);
  draw(plot);
}

async function load() {
  const answer = await api("tests/" + section.dataset.test);
  const { test, phases } = answer;
  for (const metric of ["download", "upload"]) {
    const rates = (test[metric].interval_bytes ?? []).map((bytes) => bytes * 8 / interval);
    const trips = tripsOf(test[metric + "_load"], rates.length * interval);
    const beside = (i) => trips.filter(([second]) => Math.floor(second / interval) === i);
    const columns = trips.length === 0 ? [] : [(i) => beside(i).map(([, trip]) => figure("rtt", trip)).join(", ")];
    show(metric, 200, [[texts.seconds, texts[metric], ...columns.map(() => texts.rtt)], ...rates.map((rate, i) =>
      [((i + 1) * interval).toFixed(1), figure(metric, rate), ...columns.map((text) => text(i))])],
    (plot) => drawRates(plot, metric, rates, trips));
  }
  // A report keeps no single connects, but the least, the mean and the greatest of them.
  const samples = test.rtt.samples_ns ?? [test.rtt.min_ns, test.rtt.avg_ns, test.rtt.max_ns];
  const names = test.rtt.samples_ns ? samples.map((_, i) => String(i + 1)) : [texts.least, texts.average, texts.greatest];
  show("rtt", 150, [[texts.rtt, ""], ...samples.map((value, i) => [names[i], figure("rtt", value)])],
    (plot) => drawSamples(plot, names, samples));
  const map = document.getElementById("map");
  if (map) {
    pathOf(map, phases.filter((phase) => phase.latitude !== null), test.position.accuracy_h_m);
  }
}

manage();
load().catch((problem) => {
  section.append(problem.message);
});

// The view of plots: any number over time, read once a second, one chart a number.
import {ask, part} from './api.js';
import {attempt, byId, clock, make, on} from './dom.js';
import {objects} from './values.js';

const kept = 900;  // samples
const place = 'kobd-plots';
const charts = new Map();  // by name

const colour = (name) => getComputedStyle(document.documentElement).getPropertyValue(name).trim();

function options(width) {
  const axis = {stroke: colour('--soft'), grid: {stroke: colour('--line'), width: 1}, ticks: {show: false}};
  return {width, height: 150, cursor: {y: false}, scales: {y: {range: (_, low, high) => low === high ? [low - 1, high + 1] : [low, high]}},
    axes: [{...axis, space: 90, values: (_, times) => times.map((time) => clock(new Date(time * 1000)))}, {...axis, size: 64, space: 25}], series: [{}, {stroke: colour('--accent'), width: 2, points: {show: false}}]};
}

function draw(chart) {
  chart.plot?.destroy();
  if (typeof uPlot === 'undefined') {
    chart.box.textContent = 'This gateway was built without its plots. scripts/fetch-uplot fetches what they need.';
    return;
  }
  chart.plot = new uPlot(options(chart.box.clientWidth || 300), [chart.times, chart.values], chart.box);
}

function remove(name) {
  charts.get(name).plot?.destroy();
  charts.get(name).element.remove();
  charts.delete(name);
  remember();
}

const remember = () => sessionStorage.setItem(place, JSON.stringify([...charts.keys()]));

// Begins to plot it. Many numbers are kept as texts: the values tell, not the type.
export function addPlot(name) {
  const object = objects.find((one) => one.name === name);
  if (!object?.readable) throw new Error(object ? `${name} cannot be read.` : `There is no object ${name}.`);
  if (charts.has(name)) return;
  const chart = {times: [], values: [], box: make('div', {role: 'img', 'aria-label': `${name} over time`}), now: make('span', {class: 'value'}), unit: object.unit ?? ''};
  chart.element = make('div', {class: 'chart', 'data-name': name}, make('h3', {}, make('span', {class: 'name'}, name), chart.now,
    make('button', {'aria-label': `Plot ${name} no more`, onclick: () => remove(name)}, 'Remove')), chart.box);
  charts.set(name, chart);
  byId('charts').append(chart.element);
  remember();
  sample();
}

export const isNumber = (text) => typeof text === 'string' && text.trim() !== '' && Number.isFinite(Number(text));

function take(chart, time, text) {
  const value = Number(text);
  if (!isNumber(text)) {
    chart.now.textContent = text === undefined ? 'cannot be read now' : `"${text}" is no number`;
    chart.values.push(null);
  } else {
    chart.now.textContent = `${value} ${chart.unit}`;
    chart.values.push(value);
  }
  chart.times.push(time);
  if (chart.times.length > kept) { chart.times.shift(); chart.values.shift(); }
  if (chart.box.clientWidth === 0) return;  // the view is not shown
  if (chart.plot === undefined || chart.plot.width !== chart.box.clientWidth) draw(chart);
  else chart.plot.setData([chart.times, chart.values]);
}

let sampling = false;

// One question at a time: a router that answers slowly is not asked more than it can answer.
async function sample() {
  if (sampling || charts.size === 0) return;
  sampling = true;
  const time = Date.now() / 1000;
  const asked = [...charts.keys()];
  let values = new Map();
  try {
    const answer = await ask('GET', `/api/objects?describe=0&${asked.map((name) => `match=${part(name)}`).join('&')}`);
    values = new Map(answer.objects.map((one) => [one.name, one.value]));
  } catch { /* a gap in the curve says it, and the state at the top says why */ }
  sampling = false;
  for (const name of asked.filter((one) => charts.has(one))) take(charts.get(name), time, values.get(name));
}

export function startPlots() {
  byId('numbers').append(...objects.filter((one) => one.readable).map((one) => make('option', {value: one.name})));
  const form = byId('plot-form');
  on(form, 'submit', async () => {
    const input = byId('plot-name');
    if (await attempt(form.querySelector('.wrong'), async () => addPlot(input.value.trim()), input)) input.value = '';
  });
  for (const name of JSON.parse(sessionStorage.getItem(place) ?? '[]')) addPlot(name);
  setInterval(sample, 1000);
  matchMedia('(prefers-color-scheme: dark)').addEventListener('change', redraw);
  addEventListener('resize', redraw);
}

export function redraw() {
  for (const chart of charts.values()) if (chart.times.length > 0 && chart.box.clientWidth > 0) draw(chart);
}

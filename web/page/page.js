// The page as a whole: the token first, then the views, which the fragment of the address chooses.
import {takeToken, token} from './api.js';
import {attempt, byId} from './dom.js';
import {historyChanged, openHistory, startHistory} from './history.js';
import {startLive} from './live.js';
import {redraw, startPlots} from './plots.js';
import {openSimulator, scenarioStep, startSimulator} from './simulator.js';
import {openTables, rowsChanged, startTables} from './tables.js';
import {changed, readAgain, startValues} from './values.js';

const opened = {tables: openTables, plots: redraw, simulator: openSimulator, history: openHistory};
let shown = null;  // the view; null before the start

function showView() {
  const name = location.hash.slice(1);
  shown = document.querySelector(`.view[id="${CSS.escape(name)}"]`) ?? byId('values');
  for (const one of document.querySelectorAll('.view')) one.hidden = one !== shown;
  for (const link of document.querySelectorAll('nav a'))
    if (link.hash === `#${shown.id}`) link.setAttribute('aria-current', 'page');
    else link.removeAttribute('aria-current');
  scrollTo(0, 0);
  opened[shown.id]?.();
}

// Changes may have been missed: what is shown is read again.
function missed() {
  readAgain();
  rowsChanged({});
  if (shown !== null) opened[shown.id]?.();
}

async function start() {
  byId('locked').hidden = true;
  await startValues();
  await startTables();
  startPlots();
  startSimulator();
  startHistory();
  const object = (data) => { changed(data); historyChanged(); };
  const row = (data) => { rowsChanged(data); historyChanged(); };
  startLive({object, row, finished: historyChanged, scenario: scenarioStep, missed}, missed, askForToken);
  showView();
}

function askForToken() {
  byId('locked').hidden = false;
  byId('locked').querySelector('form').onsubmit = (event) => {
    event.preventDefault();
    if (takeToken(byId('address').value)) location.reload();
    else byId('address').setAttribute('aria-invalid', 'true');
  };
}

// The token leaves the address at once, so that it is not in the history of the browser.
function takeFromAddress() {
  const taken = takeToken(location.hash);
  if (taken) history.replaceState(null, '', location.pathname);
  return taken;
}

addEventListener('hashchange', () => {
  if (takeFromAddress()) location.reload();
  else if (shown !== null) showView();
});
// The second click of a double click would do the same twice, or confirm what it has only asked for.
addEventListener('click', (event) => {
  if (event.detail < 2 || !event.target.closest('button')) return;
  event.preventDefault();
  event.stopPropagation();
}, true);

takeFromAddress();
if (token() === '') {
  askForToken();
} else if (!await attempt(byId('state'), start)) {
  askForToken();
}

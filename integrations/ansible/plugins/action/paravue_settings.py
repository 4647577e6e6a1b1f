from ansible_collections.paravue.recorder.plugins.module_utils import control
from ansible_collections.paravue.recorder.plugins.module_utils.task import ControlTask


class ActionModule(ControlTask):
    OWN_ARGUMENTS = {
        'values': {'type': 'dict', 'required': True},
        'force': {'type': 'bool', 'default': False},
    }

    def run_control(self, params):
        values = control.wanted_values(params['values'])
        if not values:
            return {'changed': False, 'changes': []}
        words = ['set', params['address']]
        words += ['--dry-run'] if self._task.check_mode else []
        words += ['--force'] if params['force'] else []
        ran = control.run(params, words, values)
        changes = ran.document.get('changes', [])
        arrived = ran.document.get('arrived', [])
        is_changed = bool(changes) if ran.is_done else bool(arrived)
        result = {
            'changed': is_changed,
            'changes': changes,
            'files': ran.document.get('files', []),
            'arrived': arrived,
            'confirmed': ran.document.get('confirmed', False),
            'invocation': control.shown_invocation(params, changes),
        }
        if self._task.diff and is_changed:
            result['diff'] = {
                'before_header': params['address'],
                'after_header': params['address'],
                'before': control.shown_changes(changes, 'old'),
                'after': control.shown_changes(changes, 'new'),
            }
        result.update(self.failure(ran))
        return result

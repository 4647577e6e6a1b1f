from ansible_collections.paravue.recorder.plugins.module_utils import control
from ansible_collections.paravue.recorder.plugins.module_utils.task import ControlTask

# What only reads.
REPORT = 'get_report'


class ActionModule(ControlTask):
    OWN_ARGUMENTS = {
        'function': {'type': 'str', 'required': True},
        'argument': {'type': 'str'},
        'confirmed': {'type': 'bool', 'default': False},
    }

    def run_control(self, params):
        for name in ('function', 'argument'):
            if (params[name] or '').startswith('-'):
                raise control.ControlError('"%s" cannot be the %s' % (params[name], name))
        is_change = params['function'] != REPORT
        if self._task.check_mode and is_change:
            return {'changed': True, 'answer': ''}
        words = ['run', params['address'], params['function']]
        words += [params['argument']] if params['argument'] is not None else []
        words += ['--yes'] if params['confirmed'] else []
        ran = control.run(params, words)
        result = {'changed': is_change and ran.is_done, 'answer': ran.document.get('answer', '')}
        if 'report' in ran.document:
            result['report'] = ran.document['report']
        result.update(self.failure(ran))
        return result
